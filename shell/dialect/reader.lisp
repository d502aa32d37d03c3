;;;; From text to forms. A reader of its own, since numbers, symbols and the place of an error differ.

(in-package lom)

(defvar *text* "" "What is being read.")
(defvar *position* 0 "The next character of it.")
(defvar *line* 1 "The line of that character.")

(defun reading-fails (text &optional opened)
  (error 'reading-error :text text :line *line* :opened opened))

(defun peek ()
  (if (< *position* (length *text*)) (char *text* *position*)))

(defun advance ()
  "The next character, which is then behind; nil at the end."
  (let ((next (peek)))
    (when next
      (incf *position*)
      (if (char= next #\Newline) (incf *line*)))
    next))

(defun blank-p (char)
  (or (char= char #\Space) (char< char #\Space) (char= char (code-char 160))))

(defun delimiter-p (char)
  (or (blank-p char) (find char "()'\";")))

(defun skip-to (position)
  (incf *line* (count #\Newline *text* :start *position* :end position))
  (setq *position* position))

(defun skip-comment ()
  (if (eql (search ";|" *text* :start2 *position* :end2 (min (+ 2 *position*) (length *text*))) *position*)
      (let ((end (search "|;" *text* :start2 (+ 2 *position*))))
        (skip-to (if end (+ 2 end) (length *text*))))
      (skip-to (or (position #\Newline *text* :start *position*) (length *text*)))))

(defun skip-blanks ()
  (do ((next (peek) (peek)))
      ((null next))
    (cond ((char= next #\;) (skip-comment))
          ((blank-p next) (advance))
          (t (return)))))

;;; Numbers

(defun digits-end (text start)
  (or (position-if-not #'digit-char-p text :start start) (length text)))

(defun char-at (text position)
  (if (< position (length text)) (char text position) #\Nul))

(defun sign-end (text start)
  (if (find (char-at text start) "+-") (1+ start) start))

(defun exponent-end (text start)
  "Where the exponent that begins at START ends; START when there is none."
  (let* ((first (if (char-equal (char-at text start) #\e) (sign-end text (1+ start)) start))
         (end (digits-end text first)))
    (if (and (> first start) (> end first)) end start)))

(defun exact-real (mantissa exponent)
  "MANTISSA times ten to the EXPONENT as a real; nil when there is none as large."
  (cond ((or (zerop mantissa) (< (+ (integer-length mantissa) (* 3 exponent)) -1200)) 0d0)
        ((> (+ (integer-length mantissa) (* 3 exponent)) 1200) nil)
        (t (let ((exact (* mantissa (expt 10 exponent))))
             (if (> (abs exact) (rational most-positive-double-float)) nil (coerce exact 'double-float))))))

(defun parse-number (text &optional (start 0))
  "The number that TEXT has at START, and where it ends; nil when it has none."
  (let* ((first (sign-end text start))
         (point (digits-end text first))
         (fraction (if (char= (char-at text point) #\.) (1+ point) point))
         (last (if (> fraction point) (digits-end text fraction) point))
         (digits (- (+ (- point first) (- last fraction))))
         (end (exponent-end text last)))
    (cond ((zerop digits) nil)
          ((= end point) (values (host-integer (parse-integer text :start start :end end)) end))
          (t (let* ((figures (concatenate 'string (subseq text first point) (subseq text fraction last)))
                    (power (if (> end last) (parse-integer text :start (1+ last) :end end) 0))
                    (size (exact-real (parse-integer figures) (- power (- last fraction)))))
               (values (signed-real (char-at text start) size) end))))))

(defun signed-real (sign real)
  (cond ((null real) (fail "real out of range"))
        ((char= sign #\-) (- real))
        (t real)))

(defun host-integer (number)
  "An integer of more than 32 bits is read as a real."
  (if (typep number '(signed-byte 32))
      number
      (or (exact-real number 0) (fail "real out of range"))))

;;; Tokens, strings, lists

(defun token-text ()
  (let ((end (or (position-if #'delimiter-p *text* :start *position*) (length *text*))))
    (prog1 (subseq *text* *position* end)
      (setq *position* end))))

(defun token-value (token)
  (multiple-value-bind (number end)
      (if (find (char token 0) "+-.0123456789") (parse-number token))
    (if (and number (= end (length token)))
        number
        (host-symbol (string-upcase token)))))

(defun read-octal ()
  "The character that up to three octal digits name."
  (let ((code 0))
    (dotimes (count 3 (code-char code))
      (let ((digit (and (peek) (digit-char-p (peek) 8))))
        (unless digit (return (code-char code)))
        (setq code (+ (* 8 code) digit))
        (advance)))))

(defun read-escape ()
  (let ((next (peek)))
    (if (and next (digit-char-p next 8))
        (read-octal)
        (case (advance)
          (#\n #\Newline)
          (#\t #\Tab)
          (#\r #\Return)
          (#\e (code-char 27))
          (t next)))))

(defun read-string ()
  (let ((opened *line*))
    (advance)
    (with-output-to-string (out)
      (loop
        (let ((next (advance)))
          (case next
            ((nil) (reading-fails "malformed string on input" opened))
            (#\" (return))
            (#\\ (write-char (or (read-escape) (reading-fails "malformed string on input" opened)) out))
            (t (write-char next out))))))))

(defun dot-p ()
  (let ((after (1+ *position*)))
    (and (eql (peek) #\.)
         (or (>= after (length *text*)) (delimiter-p (char *text* after))))))

(defun read-tail (opened)
  "What stands between the dot of a pair and its right parenthesis, which is then behind."
  (advance)
  (let ((tail (read-element opened)))
    (skip-blanks)
    (unless (eql (advance) #\))
      (reading-fails "malformed list on input" opened))
    tail))

(defun read-element (opened)
  (skip-blanks)
  (if (member (peek) '(nil #\)))
      (reading-fails "malformed list on input" opened)
      (read-form)))

(defun read-list ()
  (let ((opened *line*) (elements '()))
    (advance)
    (loop
      (skip-blanks)
      (cond ((null (peek)) (reading-fails "malformed list on input" opened))
            ((char= (peek) #\)) (advance) (return (nreverse elements)))
            ((dot-p)
             (if (null elements) (reading-fails "malformed list on input" opened))
             (return (nreconc elements (read-tail opened))))
            (t (push (read-form) elements))))))

(defun read-form ()
  "The form at *position*, where no blank is."
  (case (peek)
    (#\( (read-list))
    (#\) (reading-fails "extra right paren on input"))
    (#\' (advance) (list 'lom-user::quote (read-element *line*)))
    (#\" (read-string))
    (t (if (dot-p) (reading-fails "malformed list on input") (token-value (token-text))))))

(defun text-complete-p (text)
  "Whether no list and no string of TEXT is open at its end."
  (let ((*text* text) (*position* 0) (*line* 1))
    (handler-case (loop (skip-blanks) (if (peek) (read-form) (return t)))
      (reading-error () (< *position* (length text)))
      (serious-condition () t))))
