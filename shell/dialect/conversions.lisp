;;;; Numbers as text and back, in the units of drawings.

(in-package lom)

(defvar *system-variable-hook* (lambda (name) (declare (ignore name)) nil)
  "From the name of a system variable to its value, nil where there is none.")

(defun system-variable (name default)
  (or (funcall *system-variable-hook* name) default))

(define itoa ((integer integer))
  (format nil "~d" integer))

(defun leading-number (string)
  "The number at the beginning of STRING, 0 when it has none."
  (or (parse-number string (or (position-if-not #'blank-p string) 0)) 0))

(define atoi ((string string))
  (let* ((start (or (position-if-not #'blank-p string) 0))
         (end (digits-end string (sign-end string start))))
    (wrap (or (parse-integer string :start start :end end :junk-allowed t) 0))))

(define atof ((string string))
  (coerce (leading-number string) 'double-float))

;;; Decimal numbers. DIMZIN says which zeros are left out: 4 the leading one, 8 the trailing ones.

(defun zeros-left-out (bit)
  (logtest bit (system-variable "DIMZIN" 0)))

(defun rounded (exact)
  "The nearest integer to EXACT, not negative; a half is rounded up."
  (floor (+ exact 1/2)))

(defun decimals-text (exact decimals)
  "The rational EXACT, not negative, rounded to DECIMALS."
  (let ((digits (rounded (* exact (expt 10 decimals)))))
    (if (zerop decimals)
        (format nil "~d" digits)
        (with-point digits decimals))))

(defun strip-zeros (text)
  (let ((text (if (and (zeros-left-out 8) (find #\. text))
                  (string-right-trim "." (string-right-trim "0" text))
                  text)))
    (if (and (zeros-left-out 4) (eql 0 (search "0." text)))
        (subseq text 1)
        text)))

(defun decimal (exact decimals)
  (strip-zeros (decimals-text exact decimals)))

(defun scientific (value decimals)
  (multiple-value-bind (digits exponent)
      (if (zerop value) (values 0 0) (significant-digits value (1+ decimals)))
    (format nil "~aE~a~2,'0d"
            (strip-zeros (if (zerop decimals) (format nil "~d" digits) (with-point digits decimals)))
            (if (minusp exponent) "-" "+") (abs exponent))))

(defun fraction (exact precision)
  "EXACT as whole number and fraction with a denominator of at most 2 to the PRECISION."
  (multiple-value-bind (whole part) (floor (rounded (* exact (expt 2 precision))) (expt 2 precision))
    (let ((part (/ part (expt 2 precision))))
      (cond ((zerop part) (format nil "~d" whole))
            ((zerop whole) (format nil "~d/~d" (numerator part) (denominator part)))
            (t (format nil "~d ~d/~d" whole (numerator part) (denominator part)))))))

(defun rounded-to (exact unit)
  (* unit (rounded (/ exact unit))))

(defun feet-and-inches (exact unit write-inches)
  "EXACT inches, rounded to UNIT before the feet are split off; a length of less than a foot has none."
  (multiple-value-bind (feet inches) (floor (rounded-to exact unit) 12)
    (if (zerop feet)
        (format nil "~a\"" (funcall write-inches inches))
        (format nil "~d'-~a\"" feet (funcall write-inches inches)))))

(defun length-text (value mode precision)
  (let ((exact (rational value)))
    (case mode
      (1 (scientific value precision))
      (2 (decimal exact precision))
      (3 (feet-and-inches exact (expt 10 (- precision)) (lambda (inches) (decimal inches precision))))
      (4 (feet-and-inches exact (expt 2 (- precision)) (lambda (inches) (fraction inches precision))))
      (5 (fraction exact precision))
      (t (fail "bad argument value: mode: ~d" mode)))))

(defun nonzero-digit-p (char)
  (find char "123456789"))

(defun signed (value text)
  (if (and (minusp value) (some #'nonzero-digit-p text))
      (concatenate 'string "-" text)
      text))

(defun check-precision (precision)
  (if (<= 0 precision 16) precision (fail "bad argument value: precision: ~d" precision)))

(define rtos ((number number) &optional (mode integer) (precision integer))
  (signed number (length-text (abs number)
                              (or mode (system-variable "LUNITS" 2))
                              (check-precision (or precision (system-variable "LUPREC" 4))))))

;;; Angles

(defun degrees-minutes-seconds (degrees precision)
  "Precision 0 gives degrees, 1 and 2 also minutes, 3 and 4 seconds, more the decimals of seconds."
  (let* ((decimals (max 0 (- precision 4)))
         (unit (cond ((= precision 0) 1)
                     ((<= precision 2) 1/60)
                     (t (/ 1 3600 (expt 10 decimals))))))
    (multiple-value-bind (whole rest) (floor (rounded-to degrees unit))
      (multiple-value-bind (minutes rest) (floor (* 60 rest))
        (format nil "~dd~@[~d'~]~@[~a\"~]" whole
                (if (> precision 0) minutes)
                (if (> precision 2) (decimals-text (* 60 rest) decimals)))))))

(defun bearing (degrees precision)
  "The angle as a surveyor says it: from north or south towards east or west."
  (let* ((from-axis (if (<= 90 degrees 270) (abs (- 180 degrees)) (min degrees (- 360 degrees))))
         (north-south (if (< degrees 180) "N" "S"))
         (east-west (if (< 90 degrees 270) "W" "E"))
         (angle (degrees-minutes-seconds (- 90 from-axis) precision)))
    (cond ((notany #'nonzero-digit-p angle) north-south)
          ((string= angle (degrees-minutes-seconds 90 precision)) east-west)
          (t (format nil "~a ~a ~a" north-south angle east-west)))))

(defvar *pi* (coerce pi 'double-float))

(defun angle-text (radians mode precision)
  (let ((degrees (rational (* 180 (/ radians *pi*)))))
    (case mode
      (0 (decimals-text degrees precision))
      (1 (degrees-minutes-seconds degrees precision))
      (2 (format nil "~ag" (decimals-text (* degrees 10/9) precision)))
      (3 (format nil "~ar" (decimals-text (rational radians) precision)))
      (4 (bearing degrees precision))
      (t (fail "bad argument value: mode: ~d" mode)))))

(define angtos ((angle number) &optional (mode integer) (precision integer))
  (angle-text (mod (coerce angle 'double-float) (* 2 *pi*))
              (or mode (system-variable "AUNITS" 0))
              (check-precision (or precision (system-variable "AUPREC" 0)))))

;;; Lengths from text

(defun parse-fraction (text start)
  "The number a/b, whole a/b or decimal that TEXT has at START, and where it ends."
  (multiple-value-bind (whole end) (parse-number text start)
    (cond ((null whole) nil)
          ((char= (char-at text end) #\/) (parse-quotient whole text (1+ end)))
          ((find (char-at text end) " -")
           (multiple-value-bind (part part-end) (parse-fraction text (1+ end))
             (if (and part (integerp whole) (< -1 part 1) (find #\/ text :start end :end part-end))
                 (values (+ whole part) part-end)
                 (values whole end))))
          (t (values whole end)))))

(defun parse-quotient (numerator text start)
  (multiple-value-bind (denominator end) (parse-number text start)
    (if (and (integerp numerator) (integerp denominator) (plusp denominator))
        (values (/ numerator denominator) end))))

(defun parse-inches (text start)
  "The inches from START on, if they are all that is left of TEXT."
  (multiple-value-bind (inches end) (parse-fraction text start)
    (if (and inches (= (length text) (if (char= (char-at text end) #\") (1+ end) end)))
        inches)))

(defun parse-feet (text)
  (multiple-value-bind (feet end) (parse-number text)
    (cond ((or (null feet) (char/= (char-at text end) #\')) (parse-inches text 0))
          ((= (1+ end) (length text)) (* 12 feet))
          (t (let ((inches (parse-inches text (if (find (char-at text (1+ end)) "- ") (+ 2 end) (1+ end)))))
               (if inches (+ (* 12 feet) inches)))))))

(defun parse-decimal (text)
  (multiple-value-bind (number end) (parse-number text)
    (if (eql end (length text)) number)))

(defun parse-length (text mode)
  (case mode
    ((1 2) (parse-decimal text))
    ((3 4) (parse-feet text))
    (5 (parse-inches text 0))
    (t (fail "bad argument value: mode: ~d" mode))))

(define distof ((string string) &optional (mode integer))
  (let* ((text (string-trim " " string))
         (negative (char= (char-at text 0) #\-))
         (value (parse-length (if negative (subseq text 1) text) (or mode (system-variable "LUNITS" 2)))))
    (if value
        (coerce (if negative (- value) value) 'double-float))))
