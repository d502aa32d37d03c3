;;;; Calls of what is written in C++: functions of the host, and functions of client modules.

(in-package lom)

(defun call-host (name &rest arguments)
  "Calls the function of the program that has that NAME. Arguments and value cross as chains of records."
  (multiple-value-bind (value problem) (host-call name arguments)
    (if problem (raise problem) value)))

(defvar *client-functions* (make-hash-table :test 'equal)
  "From the name of a client module's function to what is the value of its symbol.")

(defun define-client-function (name)
  (let ((function (lambda (&rest arguments) (apply #'call-host "call-client" name arguments))))
    (setf (gethash name *client-functions*) function)
    (define-host-function name function "EXRXSUBR")))

(defun undefine-client-function (name)
  "A script's own function of that name stays."
  (let ((symbol (host-symbol name)))
    (if (eq (symbol-value symbol) (gethash name *client-functions*))
        (set symbol nil))
    (remhash name *client-functions*)))

;;; What scripts show and read

(setq *write-hook* (lambda (text) (call-host "write" text)))
(setq *read-line-hook* (lambda () (call-host "read-line")))

;;; Symbols that modules read and write

(defun symbol-item (name)
  (symbol-value (host-symbol (string-upcase name))))

(defun set-symbol-item (name value)
  (set (host-symbol (string-upcase name)) value))

;;; Types of arguments beside those of VALUES

(eval-when (:compile-toplevel :load-toplevel :execute)
  (setq *checks*
        (append '((entity-name entity-name-p "lentityp") (selection-set selection-set-p "lselsetp"))
                *checks*)))
