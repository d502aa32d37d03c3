;;;; From values to text, as the host prints them.

(in-package lom)

(defun significant-digits (value count)
  "The first COUNT digits of the positive VALUE as an integer, rounded, and its decimal exponent."
  (let* ((exact (rational value))
         (exponent (floor (log value 10d0)))
         (digits (round (* exact (expt 10 (- count 1 exponent))))))
    ;; The logarithm may be one off beside a power of ten, and rounding may add a digit.
    (cond ((< digits (expt 10 (1- count)))
           (values (round (* exact (expt 10 (- count exponent)))) (1- exponent)))
          ((>= digits (expt 10 count))
           (values (round (* exact (expt 10 (- count 2 exponent)))) (1+ exponent)))
          (t (values digits exponent)))))

(defun with-point (digits decimals)
  "The integer DIGITS as text with a point before the last DECIMALS."
  (let ((text (format nil "~v,'0d" (1+ decimals) digits)))
    (format nil "~a.~a" (subseq text 0 (- (length text) decimals)) (subseq text (- (length text) decimals)))))

(defun without-zeros (text)
  "TEXT without the zeros at its end, of which one stays behind the point."
  (let ((end (1+ (position #\0 text :from-end t :test #'char/=))))
    (subseq text 0 (if (char= (char text (1- end)) #\.) (1+ end) end))))

(defun real-text (value)
  (multiple-value-bind (digits exponent)
      (if (zerop value) (values 0 0) (significant-digits (abs value) 6))
    (concatenate 'string
                 (if (minusp value) "-" "")
                 (if (<= -4 exponent 5)
                     (without-zeros (with-point (* 10 digits) (- 6 exponent)))
                     (format nil "~ae~a~2,'0d" (without-zeros (with-point digits 5))
                             (if (minusp exponent) "-" "+") (abs exponent))))))

(defun escape-text (char)
  (case char
    (#\" "\\\"")
    (#\\ "\\\\")
    (#\Newline "\\n")
    (#\Tab "\\t")
    (#\Return "\\r")
    (t (cond ((= (char-code char) 27) "\\e")
             ((char< char #\Space) (format nil "\\~3,'0o" (char-code char)))))))

(defun print-string (string out)
  (write-char #\" out)
  (loop for char across string
        for escape = (escape-text char)
        do (if escape (write-string escape out) (write-char char out)))
  (write-char #\" out))

(defun print-list (list quoted out)
  (write-char #\( out)
  (print-to (car list) quoted out)
  (do ((rest (cdr list) (cdr rest)))
      ((atom rest)
       (when rest
         (write-string " . " out)
         (print-to rest quoted out)))
    (write-char #\Space out)
    (print-to (car rest) quoted out))
  (write-char #\) out))

(defun function-name (function)
  (or (built-in-name function)
      (string (or (ext:compiled-function-name function) "-lambda-"))))

(defun print-function (function out)
  (format out "#<~a @~16,'0x ~a>"
          (or (built-in-type function) "USUBR") (si:pointer function) (function-name function)))

(defun print-to (value quoted out)
  "Prints VALUE on the stream OUT, its strings with quotes and escapes if QUOTED."
  (cond ((null value) (write-string "nil" out))
        ((symbolp value) (write-string (symbol-name value) out))
        ((consp value) (print-list value quoted out))
        ((stringp value) (if quoted (print-string value out) (write-string value out)))
        ((integerp value) (format out "~d" value))
        ((floatp value) (write-string (real-text value) out))
        ((functionp value) (print-function value out))
        ((entity-name-p value) (format out "<Entity name: ~(~x~)>" (entity-name-high value)))
        ((selection-set-p value) (format out "<Selection set: ~(~x~)>" (selection-set-high value)))
        ((script-file-p value) (format out "#<file ~s>" (script-file-path value)))
        ((caught-error-p value) (write-string "#<%catch-all-apply-error%>" out))
        (t (princ value out))))

(defun prin1-text (value)
  (with-output-to-string (out) (print-to value t out)))

(defun princ-text (value)
  (with-output-to-string (out) (print-to value nil out)))
