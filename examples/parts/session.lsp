; Calls of the example module, one a line.

(COUNT-KINDS '("bolt" "nut" "bolt" "washer" "nut" "bolt"))
(COUNT-KINDS nil)
(BOUNDING-BOX '((1.0 2.5) (4.0 0.0) (0.0 1.0)))
(LABEL "M" 12 1.75)
(GROUP 8 '((0 . "LINE") (8 . "WALLS") (10 0.0 0.0 0.0) (62 . 1)))
(GROUP 6 '((0 . "LINE") (8 . "WALLS")))
(NEXT-NUMBER "P")
(NEXT-NUMBER "P")
(REMEMBER "LAST-NUMBER" 99)
(NEXT-NUMBER "P")

; A result that is a list in a list arrives as it is ...
(NEST '(1 2 3))
; ... unless the return flag says that LISP may take it apart.
(REMEMBER "LOM_RETURNFLAG" T)
(NEST '(1 2 3))
(REMEMBER "LOM_RETURNFLAG" nil)

; Bad input: the library says what is wrong, and the call goes on.
(LABEL "M" "twelve" 1.75)
(COUNT-KINDS 17)
