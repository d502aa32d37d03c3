;;;; Strings. Positions count from 1 in the old functions and from 0 in those of names VL-.

(in-package lom)

(define strcat (&rest (strings string))
  (apply #'concatenate 'string strings))

(define strlen (&rest (strings string))
  (reduce #'+ strings :key #'length))

(define substr ((string string) (start integer) &optional (count integer))
  (unless (plusp start)
    (fail "bad argument value: positive ~d" start))
  (if (and count (minusp count))
      (fail "bad argument value: non-negative: ~d" count))
  (let* ((length (length string))
         (start (min (1- start) length)))
    (subseq string start (if count (min length (+ start count)) length))))

(define strcase ((string string) &optional lower)
  (if lower (string-downcase string) (string-upcase string)))

(define ascii ((string string))
  (if (string= string "") 0 (char-code (char string 0))))

(define chr ((code integer))
  (string (code-character code)))

(define read ((string string))
  (let ((*text* string) (*position* 0) (*line* 1))
    (handler-case (progn (skip-blanks)
                         (if (peek) (read-form)))
      ;; Its lines are not those of the file.
      (reading-error (condition) (raise (error-text condition))))))

(define vl-string-search ((pattern string) (string string) &optional (start integer))
  (search pattern string :start2 (position-in string start)))

(defun position-in (string start)
  (cond ((null start) 0)
        ((<= 0 start (length string)) start)
        (t (fail "bad argument value: out of range: ~d" start))))

(define vl-string-subst ((new string) (old string) (string string) &optional (start integer))
  (let ((found (search old string :start2 (position-in string start))))
    (if found
        (concatenate 'string (subseq string 0 found) new (subseq string (+ found (length old))))
        string)))

(define vl-string-position ((code integer) (string string) &optional (start integer) from-end)
  (position code string :key #'char-code :start (position-in string start) :from-end from-end))

(define vl-string-elt ((string string) (index integer))
  (if (< -1 index (length string))
      (char-code (char string index))
      (fail "bad argument value: out of range: ~d" index)))

(define vl-string-trim ((characters string) (string string))
  (string-trim characters string))

(define vl-string-left-trim ((characters string) (string string))
  (string-left-trim characters string))

(define vl-string-right-trim ((characters string) (string string))
  (string-right-trim characters string))

(define vl-string->list ((string string))
  (map 'list #'char-code string))

(define vl-list->string ((codes proper-list))
  (map 'string #'code-character codes))

(defun code-character (code)
  (cond ((not (integerp code)) (bad-type "fixnump:" code))
        ((< 0 code char-code-limit) (code-char code))
        (t (fail "bad argument value: character code: ~d" code))))

(define vl-princ-to-string (value)
  (princ-text value))

(define vl-prin1-to-string (value)
  (prin1-text value))
