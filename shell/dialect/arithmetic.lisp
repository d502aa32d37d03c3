;;;; Numbers: integers of 32 bits, which wrap around, and reals.

(in-package lom)

(defun wrap (integer)
  "The 32 bits of INTEGER as a signed integer."
  (- (logand (+ integer #x80000000) #xffffffff) #x80000000))

(defun large-result (number)
  (cond ((integerp number) (wrap number))
        ((< most-negative-double-float number most-positive-double-float) number)
        (t (fail "floating-point exception"))))

;;; A macro, since a call would take longer than the arithmetic.
(defmacro result (form)
  "The number that FORM gives as the host keeps it."
  `(let ((number ,form))
     (if (< -2147483649 number 2147483648) number (large-result number))))

(defun as-reals-if-any (numbers)
  (if (every #'integerp numbers)
      numbers
      (mapcar (lambda (number) (coerce number 'double-float)) numbers)))

(define + (&rest numbers)
  (result (apply #'+ numbers)))

(define - (&rest numbers)
  (if numbers (result (apply #'- numbers)) 0))

(define * (&rest numbers)
  (if numbers (result (apply #'* numbers)) 0))

(defun quotient (a b)
  (cond ((zerop b) (fail "divide by zero"))
        ((integerp a) (result (truncate a b)))
        (t (result (/ a b)))))

(defun remainder (a b)
  (cond ((zerop b) (fail "divide by zero"))
        ((integerp a) (rem a b))
        ;; Exactly, since a quotient of reals may have lost the figures that the remainder needs.
        (t (coerce (rem (rational a) (rational b)) 'double-float))))

(define / (&rest (numbers number))
  (if numbers (reduce #'quotient (as-reals-if-any numbers)) 0))

(define rem (&rest (numbers number))
  (if numbers (reduce #'remainder (as-reals-if-any numbers)) 0))

(define gcd ((a integer) (b integer))
  (result (gcd a b)))

(define lcm ((a integer) (b integer))
  (result (lcm a b)))

(define 1+ (number)
  (result (1+ number)))

(define 1- (number)
  (result (1- number)))

(define abs (number)
  (result (abs number)))

(define min ((first number) &rest (more number))
  (reduce #'min (as-reals-if-any (cons first more))))

(define max ((first number) &rest (more number))
  (reduce #'max (as-reals-if-any (cons first more))))

(define fix ((number number))
  (let ((integer (truncate number)))
    (if (typep integer '(signed-byte 32)) integer (coerce integer 'double-float))))

(define float ((number number))
  (coerce number 'double-float))

(defun undefined-for (number)
  (fail "function undefined for argument: ~a" (prin1-text number)))

(define sqrt ((number number))
  (if (minusp number) (undefined-for number) (sqrt (coerce number 'double-float))))

(define log ((number number))
  (if (plusp number) (log (coerce number 'double-float)) (undefined-for number)))

(define exp ((number number))
  (result (exp (coerce number 'double-float))))

(define expt ((base number) (power number))
  (cond ((and (integerp base) (integerp power) (not (minusp power)))
         (integer-power base power))
        ((and (zerop base) (minusp power)) (fail "divide by zero"))
        ((and (zerop base) (plusp power)) 0d0)
        ((and (minusp base) (/= power (ffloor power))) (undefined-for base))
        (t (result (expt (coerce base 'double-float) (if (integerp power) power (real-power base power)))))))

(defun real-power (base power)
  ;; A negative base has a real power only for a whole one, which then must be an integer.
  (if (minusp base) (truncate power) power))

(defun integer-power (base power)
  "Squares and wraps, since the exact power may be too large to be built."
  (do ((power power (ash power -1))
       (square base (wrap (* square square)))
       (product 1 (if (oddp power) (wrap (* product square)) product)))
      ((zerop power) product)))

(define sin ((number number))
  (sin (coerce number 'double-float)))

(define cos ((number number))
  (cos (coerce number 'double-float)))

(define atan ((a number) &optional (b number))
  (if b
      (atan (coerce a 'double-float) (coerce b 'double-float))
      (atan (coerce a 'double-float))))

;;; Bits

(define ~ ((integer integer))
  (lognot integer))

(define logand (&rest (integers integer))
  (apply #'logand (or integers '(0))))

(define logior (&rest (integers integer))
  (apply #'logior integers))

(define lsh ((integer integer) (count integer))
  ;; Beyond 32 places nothing is left, and the shift itself could take all memory.
  (let ((count (max -32 (min 32 count))))
    (wrap (ash (logand integer #xffffffff) count))))

(defun boole-of-two (operation a b)
  "Each bit of OPERATION stands for one pair of bits: both, only that of A, only that of B, neither."
  (logior (if (logtest operation 1) (logand a b) 0)
          (if (logtest operation 2) (logandc2 a b) 0)
          (if (logtest operation 4) (logandc1 a b) 0)
          (if (logtest operation 8) (lognor a b) 0)))

(define boole ((operation integer) &rest (integers integer))
  (if integers
      (reduce (lambda (a b) (boole-of-two operation a b)) integers)
      0))

;;; Predicates

(define numberp (value)
  (numberp value))

(define zerop ((number number))
  (zerop number))

(define minusp ((number number))
  (minusp number))
