# Lists large files, written against the PowerShell language specification.
<#
.SYNOPSIS
Finds files larger than a size.
#>
param(
    [string]$Path = '.',
    [int]$MinimumKB = 0x400
)

function Get-LargeFile {
    param([string]$Root, [int]$Kb)
    Get-ChildItem -Path $Root -Recurse -File |
        Where-Object { $_.Length -gt $Kb * 1024 } |
        Sort-Object Length -Descending
}

$files = Get-LargeFile -Root $Path -Kb $MinimumKB
foreach ($file in $files) {
    Write-Output "$($file.Name): $([math]::Round($file.Length / 1KB)) KB"   # size
}
if ($files.Count -eq 0) { Write-Warning 'None found, it''s fine' }
