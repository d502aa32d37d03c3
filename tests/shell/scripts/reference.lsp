; Where it is easy to differ from what the host does.

; a handle finds what was erased since the drawing was opened, so that it can come back
(setq line (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))))
(setq handle (cdr (assoc 5 (entget line))))
(equal (entdel line) line)
(equal (handent handle) line)
(equal (entdel (handent handle)) line)
(cdr (assoc 0 (entget line)))

; the current layer must be there
(setvar "CLAYER" "NO-SUCH-LAYER")
(getvar "CLAYER")

; searches in tables give the old groups alone, names of entries give all
(tblsearch "LAYER" "0")
(assoc 370 (entget (tblobjname "LAYER" "0")))

; lists of more than two with a dot: behind two items the library takes it for the end of a pair, as a host
; may write one so
(progn (arxload "parts.so") nil)
(REMEMBER "A" '(1 2 . 3))
(REMEMBER "A" '(1 2 3 . 4))
(REMEMBER "A" '(("a" "b" "c" . "d") . "e"))

; what ends with the wrong argument
(car 'end)
