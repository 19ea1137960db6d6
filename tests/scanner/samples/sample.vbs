' Lists the largest files of a folder, written against the VBScript language
' reference: declarations, procedures, classes, loops, strings and errors.
Option Explicit

Const MAX_FILES = 10
Dim fso, folder, report, path

Class FileEntry
    Public Name
    Public Size

    Public Function Describe()
        Describe = Name & " (" & FormatNumber(Size / 1024, 1) & " KiB)"
    End Function
End Class

Function Largest(folderObject, count)
    Dim entries(), file, i, j, swap, n
    n = 0
    ReDim entries(folderObject.Files.Count)
    For Each file In folderObject.Files
        Set entries(n) = New FileEntry
        entries(n).Name = file.Name
        entries(n).Size = file.Size
        n = n + 1
    Next
    ' a plain selection sort is enough here
    For i = 0 To n - 2
        For j = i + 1 To n - 1
            If entries(j).Size > entries(i).Size Then
                Set swap = entries(i)
                Set entries(i) = entries(j)
                Set entries(j) = swap
            End If
        Next
    Next
    If n > count Then n = count
    ReDim Preserve entries(n)
    Largest = entries
End Function

Sub Main()
    On Error Resume Next
    path = "C:\Temp"
    If WScript.Arguments.Count > 0 Then path = WScript.Arguments(0)
    Set fso = CreateObject("Scripting.FileSystemObject")
    Set folder = fso.GetFolder(path)
    If Err.Number <> 0 Then
        WScript.Echo "Cannot open """ & path & """: " & Err.Description
        Exit Sub
    End If
    Dim entry
    For Each entry In Largest(folder, MAX_FILES)
        If Not IsEmpty(entry) Then report = report & entry.Describe() & vbCrLf
    Next
    WScript.Echo "Largest files of " & path & ":" & vbCrLf & report
End Sub

Main
