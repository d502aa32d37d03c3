;;;; Equality, order and the kinds of values.

(in-package lom)

(defun same (a b)
  "The host's =, with two arguments."
  (cond ((eq a b) t)
        ((numberp a) (and (numberp b) (= a b)))
        ((stringp a) (and (stringp b) (string= a b)))
        (t (same-name a b))))

(defun different (a b)
  (not (same a b)))

(defun order (a b)
  "Less than, equal to or greater than 0 as A comes before, with or after B."
  (cond ((and (numberp a) (numberp b)) (if (= a b) 0 (if (< a b) -1 1)))
        ((and (stringp a) (stringp b)) (if (string= a b) 0 (if (string< a b) -1 1)))
        (t (fail "bad argument type for compare: ~a ~a" (prin1-text a) (prin1-text b)))))

(defun neighbours (compare first more)
  "Whether COMPARE holds between each value and the next."
  (do ((left first (car rest))
       (rest more (cdr rest)))
      ((null rest) t)
    (unless (funcall compare left (car rest))
      (return nil))))

(define = (first &rest more)
  (neighbours #'same first more))

(define /= (first &rest more)
  (neighbours #'different first more))

(defmacro define-orders (&rest names)
  ;; Loops ask these of two numbers, mostly, which a comparison of two texts must not make slow.
  `(progn
     ,@(loop for name in names
             collect `(define ,name (first &rest more)
                        (if (and (numberp first) (numberp (car more)) (null (cdr more)))
                            (,name first (car more))
                            (neighbours (lambda (a b) (,name (order a b) 0)) first more))))))

(define-orders < > <= >=)

(define eq (a b)
  (or (eql a b) (same-name a b)))

(defun equal-within (a b fuzz)
  (do ()
      ((not (and (consp a) (consp b)))
       (if (and (numberp a) (numberp b))
           (<= (abs (- a b)) fuzz)
           (same a b)))
    (unless (equal-within (car a) (car b) fuzz)
      (return nil))
    (setq a (cdr a) b (cdr b))))

(defun equal-values (a b)
  (equal-within a b 0))

(define equal (a b &optional (fuzz number))
  (equal-within a b (or fuzz 0)))

(define not (value)
  (null value))

(define null (value)
  (null value))

(define atom (value)
  (atom value))

(define listp (value)
  (listp value))

(define vl-consp (value)
  (consp value))

(define boundp ((symbol symbol))
  (if (symbol-value symbol) t))

(define vl-symbolp (value)
  (and value (symbolp value)))

(defun function-type (function)
  (or (built-in-type function) "USUBR"))

(define type (value)
  (let ((name (cond ((null value) nil)
                    ((symbolp value) "SYM")
                    ((consp value) "LIST")
                    ((integerp value) "INT")
                    ((floatp value) "REAL")
                    ((stringp value) "STR")
                    ((functionp value) (function-type value))
                    ((entity-name-p value) "ENAME")
                    ((selection-set-p value) "PICKSET")
                    ((script-file-p value) "FILE")
                    ((caught-error-p value) "VL-CATCH-ALL-APPLY-ERROR"))))
    (if name (host-symbol name))))

(define set (symbol value)
  (set (check-variable symbol) value))

(define vl-symbol-name ((symbol symbol))
  (princ-text symbol))

(define vl-symbol-value ((symbol symbol))
  (symbol-value symbol))
