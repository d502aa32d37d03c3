; Values that cross to a module and back: REMEMBER gives what it gets, and sets a symbol to it.

(progn (arxload "parts.so") nil)
(defun crosses (value / back) (setq kept nil back (REMEMBER "KEPT" value)) (if (and (equal back value) (equal kept value) (eq (type back) (type value))) T (list back kept)))

; integers of 16 and of 32 bits
(mapcar 'crosses '(0 1 -1 32767 -32768 32768 -32769 65535 65536 2147483647 -2147483648))
(REMEMBER "A" 32767)
(REMEMBER "A" 32768)
(REMEMBER "A" -2147483648)
(REMEMBER "A" 2147483648)
(crosses '(32767 32768 -32768 -32769))

; reals
(mapcar 'crosses '(0.0 1.5 -1.5 1e300 -1e300 1e-300 0.1 123456789.123456789 5e-324 1.7976931348623157e308))
(REMEMBER "A" 2.0)
(type (REMEMBER "A" 2.0))
(type (REMEMBER "A" 2))
(crosses '(1 2.0 3))

; texts
(mapcar 'crosses '("" " " "a" "\"quoted\"" "back\\slash" "\n\t\r\e" "äöüß" "Ωж中" "😀" "a😀b" "nil" "T" "(1 . 2)"))
(REMEMBER "A" "")
(REMEMBER "A" "größer 😀 Ж")
(strlen (REMEMBER "A" "😀"))
(REMEMBER "A" (chr 255))
(setq long-text "0123456789")
(repeat 13 (setq long-text (strcat long-text long-text)) (strlen long-text))
(crosses long-text)
(LABEL "größe 😀 " 1 2.0)
(REMEMBER "VARIABLE-Ä" 5)
variable-ä

; nil, T and lists
(mapcar 'crosses (list nil T '(nil) '(T) '(nil nil) '(T nil T) '((nil)) '(1 nil) '(nil 1)))
(REMEMBER "A" nil)
a
(REMEMBER "A" T)
(REMEMBER "A" '(nil))
(mapcar 'crosses '((1) (1 2) ("a" 1 2.5) ((1) (2)) ((1 (2 (3)))) (((1 2) 3) 4) (() (()))))

; points
(REMEMBER "A" '(1.0 2.0))
(REMEMBER "A" '(1.0 2.0 3.0))
(REMEMBER "A" '(1.0 2.0 3.0 4.0))
(REMEMBER "A" '(1.0))
(REMEMBER "A" '(1 2))
(REMEMBER "A" '(1 2 3))
(REMEMBER "A" '(1.0 2))
(REMEMBER "A" '((1.0 2.0) (3.0 4.0 5.0)))
(REMEMBER "A" '(10 1.0 2.0 3.0))
(REMEMBER "A" '((10 1.0 2.0 3.0) (11 1.0 2.0)))
(mapcar 'crosses '((1.0 2.0) (1.0 2.0 3.0) (1 2) (10 1.0 2.0 3.0) (("a" 1.0 2.0) (1.0 2.0)) (nil 1.0 2.0)))

; pairs
(REMEMBER "A" '(1 . 2))
(REMEMBER "A" '(8 . "0"))
(REMEMBER "A" (cons 1.0 2.0))
(REMEMBER "A" '(1 . T))
(REMEMBER "A" '(nil . 1))
(REMEMBER "A" '((1 . 2) . 3))
(REMEMBER "A" '((1 . 2) (3 . 4)))
(REMEMBER "A" '(1 . (2 . (3 . nil))))
(REMEMBER "A" '(((1 . 2))))
(mapcar 'crosses '((1 . 2) ((1 . 2) . 3) ((1.0 2.0) . 3) (nil . 1) (0 . "LINE")))

; names of entities and of selection sets
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(crosses point)
(equal (REMEMBER "A" point) point)
(crosses (list (cons -1 point) '(0 . "POINT")))
(setq set (ssget "X"))
(crosses set)
(eq (REMEMBER "A" set) set)
(sslength (REMEMBER "A" set))
(crosses (list set point (cons 330 point)))
(crosses (entget point))

; deep lists and long ones
(defun depth (value / levels) (setq levels 0) (while value (setq levels (1+ levels) value (car value))) levels)
(progn (setq deep nil) (repeat 10000 (setq deep (list deep))) (depth deep))
(depth (REMEMBER "KEPT" deep))
(depth kept)
(progn (setq deep '(1)) (repeat 10000 (setq deep (list 1 deep))) (REMEMBER "KEPT" deep) (setq count 0) (while (cdr kept) (setq kept (cadr kept) count (1+ count))) count)
(progn (setq long nil) (repeat 30000 (setq long (cons 7 long))) (length long))
(length (REMEMBER "KEPT" long))
(progn (setq sum 0) (foreach each kept (setq sum (+ sum each))) sum)
(crosses long)
(progn (setq long nil) (repeat 20000 (setq long (cons "a" long))) (crosses long))
(COUNT-KINDS long)
(progn (setq long nil count 0) (repeat 20000 (setq long (cons (cons count 1.5) long) count (1+ count))) (crosses long))
(progn (setq long nil) (repeat 10000 (setq long (cons '(1.0 2.0 3.0) long))) (BOUNDING-BOX long))

; what cannot leave LISP
(REMEMBER "A" 'symbol)
(REMEMBER "A" '(1 symbol))
(REMEMBER "A" car)
(REMEMBER "A" REMEMBER)
(REMEMBER "A" (lambda (x) x))
(REMEMBER "A" (open "written.txt" "w"))
(REMEMBER "A" (vl-catch-all-apply '/ '(1 0)))
(REMEMBER 'a 5)
(GROUP 8 'symbol)

; names that no symbol can have
(REMEMBER "T" 5)
T
(REMEMBER "nil" 5)
(REMEMBER "" 5)
(REMEMBER "two words" 5)
(REMEMBER "12" 5)
(REMEMBER 5 5)
