;;;; System variables.

(in-package lom)

(define getvar (name)
  (call-host "getvar" (variable-name name)))

(define setvar (name value)
  (call-host "setvar" (variable-name name) (if (point-p value) (reals value) value))
  value)

(defun reals (numbers)
  "A point may have integers as its coordinates; the platform wants reals."
  (mapcar (lambda (number) (coerce number 'double-float)) numbers))

(defun variable-name (name)
  (cond ((stringp name) name)
        ((and name (symbolp name)) (symbol-name name))
        (t (bad-type "stringp" name))))

(setq *system-variable-hook* (lambda (name) (call-host "getvar" name)))
