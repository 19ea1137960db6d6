; Counts the lines of standard input and prints the count, 64-bit Linux.
; Written against the NASM manual: sections, labels, local labels, macros,
; strings in three quote forms, numbers in several bases and structures.
%define SYS_read   0
%define SYS_write  1
%define SYS_exit   60
%assign BUFSIZE 4096        ; bytes read at a time

%macro syscall3 4           ; number, three arguments
        mov     rax, %1
        mov     rdi, %2
        mov     rsi, %3
        mov     rdx, %4
        syscall
%endmacro

struc counter
  .lines:  resq 1
  .bytes:  resq 1
endstruc

        section .data
prefix: db      "lines: ", 0
quote:  db      'it''s', `tab\there`, 0x0A
mask:   dd      0FFh, 0b1010_1010, 0o17, 1_000_000
total:  istruc counter
          at counter.lines, dq 0
          at counter.bytes, dq 0
        iend

        section .bss
buffer: resb    BUFSIZE
digits: resb    24

        section .text
        global  _start
_start:
.read:  syscall3 SYS_read, 0, buffer, BUFSIZE
        test    rax, rax            ; end of input?
        jle     .print
        add     [rel total + counter.bytes], rax
        mov     rcx, rax
        lea     rsi, [rel buffer]
.scan:  cmp     byte [rsi], 10      ; a newline ends a line
        jne     .next
        inc     qword [rel total + counter.lines]
.next:  inc     rsi
        loop    .scan
        jmp     .read
.print: mov     rax, [rel total + counter.lines]
        lea     rdi, [rel digits + 23]
        mov     rbx, 10
.digit: xor     edx, edx
        div     rbx
        add     dl, '0'
        dec     rdi
        mov     [rdi], dl
        test    rax, rax
        jnz     .digit
        lea     rdx, [rel digits + 23]
        sub     rdx, rdi
        syscall3 SYS_write, 1, rdi, rdx
        syscall3 SYS_exit, 0, 0, 0
