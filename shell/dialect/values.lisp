;;;; Kinds of values that Common Lisp does not have, and the definition of built-in functions.

(in-package lom)

;;; Two words name an entity or a set of them, as in a result buffer.
(defstruct (entity-name (:constructor make-entity-name (&key (high 0) (low 0)))
                        (:constructor name-of-entity (high low)))
  high low)
(defstruct (selection-set (:constructor make-selection-set (&key (high 0) (low 0)))
                          (:constructor name-of-selection-set (high low)))
  high low)
(defstruct script-file path stream)
(defstruct caught-error text)

(defun same-name (a b)
  "Whether A and B name the same entity or selection set."
  (and (or (and (entity-name-p a) (entity-name-p b))
           (and (selection-set-p a) (selection-set-p b)))
       (equalp a b)))

(defvar *built-in* (make-hash-table :test 'eq)
  "From a function that is not a script's to its name and the symbol that TYPE gives for it.")

(defun define-host-function (name function &optional (type "SUBR"))
  "Makes FUNCTION the value of the script's symbol NAME, which is upper case."
  (setf (gethash function *built-in*) (cons name type))
  (set (host-symbol name) function))

(defun built-in-name (function) (car (gethash function *built-in*)))
(defun built-in-type (function) (cdr (gethash function *built-in*)))

(defun open-file-p (value) (and (script-file-p value) (open-stream-p (script-file-stream value))))

(defun point-p (value)
  (and (consp value)
       (member (list-length-or-nil value) '(2 3))
       (every #'numberp value)))

(defun list-length-or-nil (value)
  "The length of VALUE, nil when it is not a list that ends in nil."
  (do ((rest value (cdr rest))
       (length 0 (1+ length)))
      ((atom rest) (if (null rest) length))))

(eval-when (:compile-toplevel :load-toplevel :execute)
  (defparameter *checks*
    '((number numberp "numberp:") (integer integerp "fixnump:") (string stringp "stringp")
      (list listp "listp") (cons consp "consp") (symbol symbolp "symbolp")
      (proper-list list-length-or-nil "listp") (point point-p "2D/3D point:")
      (file open-file-p "streamp") (caught-error caught-error-p "vl-catch-all-error-p"))
    "Type of an argument, predicate, how the host calls it.")

  (defun check-form (name type)
    (destructuring-bind (predicate wanted) (cdr (assoc type *checks*))
      `(if (,predicate ,name) nil (bad-type ,wanted ,name))))

  (defun typed-parameters (parameters)
    "The plain lambda list of PARAMETERS and the forms that check its arguments."
    (let ((plain '()) (checks '()) (mode nil))
      (dolist (parameter parameters)
        (cond ((member parameter '(&optional &rest)) (setq mode parameter) (push parameter plain))
              ((atom parameter) (push parameter plain))
              (t (destructuring-bind (name type) parameter
                   (push name plain)
                   (push (case mode
                           (&rest `(dolist (each ,name) ,(check-form 'each type)))
                           (&optional `(when ,name ,(check-form name type)))
                           (t (check-form name type)))
                         checks)))))
      (values (nreverse plain) (nreverse checks)))))

(defmacro define (name parameters &body body)
  "Defines the built-in function NAME. A parameter is a name or (name type); an optional one may be nil."
  (multiple-value-bind (plain checks) (typed-parameters parameters)
    `(define-host-function ,(string name)
         #'(ext:lambda-block ,(host-symbol (string name)) ,plain ,@checks ,@body))))
