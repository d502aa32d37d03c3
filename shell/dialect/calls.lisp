;;;; Calling: what stands for a function, and catching what goes wrong.

(in-package lom)

(defvar *compiled-lists* (make-hash-table :test 'eq :weakness :key)
  "From a list that was called as a function to the function. No function changes a list in place.")

(defun list-function (list)
  "The function that LIST describes: (lambda (parameters) ...) or ((parameters) ...)."
  (or (gethash list *compiled-lists*)
      (setf (gethash list *compiled-lists*)
            (let ((description (if (eq (car list) 'lom-user::lambda) (cdr list) list)))
              (if (and (consp description) (listp (car description)))
                  (eval (lambda-form 'lom-user::|-lambda-| (car description) (cdr description)))
                  (fail "bad function: ~a" (prin1-text list)))))))

(defun callee (symbol)
  "What the value of SYMBOL, which is not a function itself, stands for."
  (let ((value (symbol-value symbol)))
    (cond ((functionp value) value)
          ((null value) (fail "no function definition: ~a" symbol))
          ((consp value) (list-function value))
          (t (fail "bad function: ~a" (prin1-text value))))))

(defun as-function (value)
  (cond ((functionp value) value)
        ((consp value) (list-function value))
        ((and value (symbolp value)) (callee value))
        (t (fail "bad function: ~a" (prin1-text value)))))

(define apply (function (arguments proper-list))
  (apply (as-function function) arguments))

(define mapcar (function (first list) &rest (more list))
  (apply #'mapcar (as-function function) first more))

(define eval (form)
  (evaluate form))

(define vl-catch-all-apply (function (arguments proper-list))
  (handler-case (apply (as-function function) arguments)
    (stopped (condition) (error condition))
    (serious-condition (condition) (make-caught-error :text (error-text condition)))))

(define vl-catch-all-error-p (value)
  (caught-error-p value))

(define vl-catch-all-error-message ((caught caught-error))
  (caught-error-text caught))

(define exit ()
  (fail "quit / exit abort"))

(define quit ()
  (fail "quit / exit abort"))
