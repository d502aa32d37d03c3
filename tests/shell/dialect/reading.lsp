; a comment
(list 1 ; inside
 ;| a comment
   of two lines |; 2)
'(a B c:Name x-y 1+ -1+ 2a a.b |x| #z a/b , @)
'a'b
'(1 . 2)
'(1 2 . 3)
'(a .5)
'(a . (b c))
'(1.5 .5 1. +5 -5 1e3 -3.5e-2 1E+2 1.e2 +.5 -.5)
(list 2147483647 2147483648 -2147483648 -2147483649 12345678901234567890)
'(+ - 1e 1e+ . x)
'(1- e5 1/2 1d5 ..)
"tab\tnew\nret\rquote\"back\\esc\eoctal\101\0601"
"two
lines"
()
'()
nil
T
't
PI
pause
'Sym
''x
(read "")
(read "  ; only a comment")
(read "(a b . c) rest")
(read "abc def")
(read "\"str\"")
(read ".5")
(read "1e999")
(read "(a")
(read ")")
(read "\"abc")
(read "'")
(read "(a . )")
(read "(. a)")
(read "(a . b c)")
(read ".")
(read 5)
(read)
(strlen (read "\"\\101\""))
(= 0.1 (read "0.1"))
(mapcar 'test-complete '("(a" "(a)" "\"a" "(a))" "'" "; (" "a (b) (c (d)" ""))
(list "opened here"
  (list 1
    (list 2 3)
