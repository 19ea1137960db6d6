C     Solves a tridiagonal system, written against the FORTRAN 77
C     standard (fixed form: comments in column 1, code from column 7).
*     A star in column 1 starts a comment as well.
      PROGRAM TRIDI
      IMPLICIT NONE
      INTEGER N
      PARAMETER (N = 5)
      DOUBLE PRECISION A(N), B(N), C(N), D(N), X(N)
      INTEGER I
      CHARACTER*20 TITLE
      DATA TITLE /'Tridiagonal solver'/
C
C     Fill the three diagonals and the right-hand side.
C
      DO 10 I = 1, N
         A(I) = -1.0D0
         B(I) = 2.0D0
         C(I) = -1.0D0
         D(I) = DBLE(I)
   10 CONTINUE
      CALL SOLVE(N, A, B, C, D, X)
      WRITE (*, '(A)') TITLE
      WRITE (*, 100) (X(I), I = 1, N)
  100 FORMAT (' X = ', 5F10.4)
      IF (X(1) .LT. 0.0D0 .OR. X(N) .LT. 0.0D0) THEN
         PRINT *, 'Negative result; check the input.'
      END IF
      STOP
      END
C
C     Thomas algorithm: forward sweep, then back substitution.
C     The input arrays B and D are overwritten.
C
      SUBROUTINE SOLVE(N, A, B, C, D, X)
      INTEGER N, I
      DOUBLE PRECISION A(N), B(N), C(N), D(N), X(N), M
      DO 20 I = 2, N
         M = A(I) / B(I - 1)
         B(I) = B(I) - M * C(I - 1)
         D(I) = D(I) - M * D(I - 1)
   20 CONTINUE
      X(N) = D(N) / B(N)
      DO 30 I = N - 1, 1, -1
         X(I) = (D(I) - C(I) * X(I + 1)) / B(I)
   30 CONTINUE
      RETURN
      END
