;;;; From forms of the host's LISP to forms of Common Lisp, which ECL evaluates.
;;;;
;;;; A translated form names symbols of LOM-USER, all of them dynamic variables, and symbols of LOM
;;;; where it needs a variable of its own: no script can name those.

(in-package lom)

(defvar *translators* (make-hash-table :test 'eq)
  "From the name of a special form to the function that translates its arguments.")

(defun translate (form)
  (if (consp form) (translate-list form) form))

(defun translate-all (forms)
  (mapcar #'translate forms))

(defun translate-list (form)
  (unless (list-length-or-nil form)
    (fail "syntax error"))
  (let ((translator (gethash (car form) *translators*)))
    (if translator
        (apply-translator translator (cdr form))
        `(funcall ,(function-form (car form)) ,@(translate-all (cdr form))))))

(defun apply-translator (translator arguments)
  "An error in a form that is never reached must not hinder those around it."
  (handler-case (apply translator arguments)
    (script-error (condition) `(raise ,(script-error-text condition)))
    (program-error (condition) `(raise ,(argument-count-text condition)))))

(defun function-form (head)
  (cond ((null head) '(raise "bad function: nil"))
        ((symbolp head) `(if (functionp ,head) ,head (callee ',head)))
        (t `(as-function ,(translate head)))))

(defun evaluate (form)
  (eval (translate form)))

(defmacro define-special (name parameters &body body)
  "Defines how the special form NAME is translated. It is a function, too, whose arguments are not
evaluated again, since scripts apply AND and OR."
  (let ((symbol (host-symbol (string name))))
    `(progn
       (setf (gethash ',symbol *translators*) (lambda ,parameters ,@body))
       (define ,name (&rest arguments)
         (evaluate (cons ',symbol (mapcar (lambda (value) (list 'lom-user::quote value)) arguments)))))))

(defun check-variable (symbol)
  (cond ((member symbol '(nil t)) (fail "assignment to protected symbol: ~a" (princ-text symbol)))
        ((not (symbolp symbol)) (bad-type "symbolp" symbol))
        (t symbol)))

;;; Functions

(defun split-parameters (parameters)
  "The arguments and the local variables of a parameter list (a b / c)."
  (unless (list-length-or-nil parameters)
    (fail "syntax error"))
  (let ((slash (member 'lom-user::/ parameters)))
    (values (mapcar #'check-variable (ldiff parameters slash))
            (remove-duplicates (mapcar #'check-variable (cdr slash))))))

(defun lambda-form (name parameters body)
  (multiple-value-bind (arguments locals) (split-parameters parameters)
    (if (/= (length arguments) (length (remove-duplicates arguments)))
        (fail "syntax error"))
    `(function
      (ext:lambda-block ,name ,arguments
        (poll)
        ,(if locals
             `(let ,(mapcar (lambda (local) (list local nil)) (set-difference locals arguments))
                (setq ,@(mapcan (lambda (local) (list local nil)) (intersection locals arguments)))
                ,@(translate-all body))
             `(progn ,@(translate-all body)))))))

(define-special quote (value)
  `(quote ,value))

(define-special function (value)
  (if (atom value) `(quote ,value) (translate value)))

(define-special lambda (parameters &rest body)
  (lambda-form 'lom-user::|-lambda-| parameters body))

(define-special defun (name parameters &rest body)
  `(progn (setq ,(check-variable name) ,(lambda-form name parameters body))
          ',name))

(define-special defun-q (name parameters &rest body)
  `(progn (setq ,(check-variable name) '(,parameters ,@body))
          ',name))

;;; Variables

(define-special setq (&rest pairs)
  (if (oddp (length pairs))
      (fail "too few arguments"))
  `(setq ,@(loop for (variable value) on pairs by #'cddr
                 collect (check-variable variable)
                 collect (translate value))))

;;; Choices

(define-special if (condition then &optional else)
  `(if ,(translate condition) ,(translate then) ,(translate else)))

(define-special cond (&rest clauses)
  `(cond ,@(mapcar (lambda (clause)
                     (if (and clause (list-length-or-nil clause)) (translate-all clause) (fail "syntax error")))
                   clauses)))

(define-special and (&rest forms)
  `(if (and ,@(translate-all forms)) t nil))

(define-special or (&rest forms)
  `(if (or ,@(translate-all forms)) t nil))

(define-special progn (&rest forms)
  `(progn ,@(translate-all forms)))

;;; Loops, which give the value of their last form

(define-special while (condition &rest body)
  `(let ((result nil))
     (do () ((not ,(translate condition)) result)
       (poll)
       (setq result (progn ,@(translate-all body))))))

(defun check-count (count)
  (if (integerp count) count (bad-type "fixnump:" count)))

(define-special repeat (count &rest body)
  `(let ((result nil))
     (dotimes (turn (check-count ,(translate count)) result)
       (poll)
       (setq result (progn ,@(translate-all body))))))

(defun check-list (list)
  (if (list-length-or-nil list) list (bad-type "listp" list)))

(define-special foreach (variable list &rest body)
  `(let ((result nil) (elements (check-list ,(translate list))))
     (let ((,(check-variable variable) nil))
       (dolist (element elements result)
         (poll)
         (setq ,variable element)
         (setq result (progn ,@(translate-all body)))))))
