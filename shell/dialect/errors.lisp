;;;; Errors: raising one with the host's text, and the host's text for one of Common Lisp.

(in-package lom)

(define-condition script-error (error)
  ((text :initarg :text :reader script-error-text))
  (:report (lambda (condition stream) (write-string (script-error-text condition) stream))))

;;; Raised when the session must end: a script cannot catch it.
(define-condition stopped (serious-condition) ())

(define-condition reading-error (script-error)
  ((line :initarg :line :reader reading-error-line)
   (opened :initarg :opened :reader reading-error-opened)))

(defun raise (text)
  (error 'script-error :text text))

(defun fail (control &rest arguments)
  (raise (apply #'format nil control arguments)))

(defun bad-type (wanted value)
  (fail "bad argument type: ~a ~a" wanted (prin1-text value)))

(defvar *interrupted* nil
  "Set from outside: T interrupts what runs as the user's key does, :STOP ends it for good.")

(defun interrupt ()
  (when (eq *interrupted* :stop)
    (error 'stopped))
  (setq *interrupted* nil)
  (fail "Function cancelled"))

(defmacro poll ()
  '(if *interrupted* (interrupt)))

(defun type-error-text (condition)
  (let* ((expected (type-error-expected-type condition))
         (wanted (case expected
                   ((list cons) "consp")
                   ((number real float) "numberp:")
                   (string "stringp")
                   (symbol "symbolp")
                   ((sequence si::proper-list) "listp")
                   (t (if (subtypep expected 'integer) "fixnump:" (string-downcase (princ-to-string expected)))))))
    (format nil "bad argument type: ~a ~a" wanted (prin1-text (type-error-datum condition)))))

(defun argument-count-text (condition)
  ;; Its text is the only mark by which ECL tells the errors apart.
  (if (some (lambda (beginning) (eql 0 (search beginning (princ-to-string condition))))
            '("Too many" "CALL-ARGUMENTS-LIMIT"))
      "too many arguments"
      "too few arguments"))

(defun error-text (condition)
  "What *error* is called with."
  (typecase condition
    (script-error (script-error-text condition))
    ((or stopped ext:interactive-interrupt) "Function cancelled")
    (ext:stack-overflow "internal stack limit reached")
    (storage-condition "insufficient memory")
    (type-error (type-error-text condition))
    (program-error (argument-count-text condition))
    (division-by-zero "divide by zero")
    (arithmetic-error "floating-point exception")
    (t (substitute #\Space #\Newline (princ-to-string condition)))))
