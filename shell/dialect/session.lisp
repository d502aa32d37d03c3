;;;; What the program calls: texts to be evaluated, and what came of them.

(in-package lom)

(ext:trap-fpe t nil)    ; a real that is out of range must not stop the program around

(defvar *file* nil "The file that is being evaluated, nil for what was typed.")
(defvar *form-line* 1 "Where in it the form begins that is being evaluated.")

(set (host-symbol "PI") *pi*)
(set (host-symbol "PAUSE") "\\")
(host-symbol "*ERROR*")

(defun print-value (value)
  "VALUE as the prompt shows it."
  (prin1-text value))

(defun evaluate-forms (*text* *file* *line*)
  "Evaluates the forms of the text and gives the value of the last."
  (let ((*position* 0) (*form-line* *line*) (value nil))
    (loop
      (skip-blanks)
      (setq *form-line* *line*)
      (if (null (peek))
          (return value))
      (setq value (evaluate (read-form))))))

(defun place (condition)
  "Where the error is: the file and the line in which its form begins; where text could not be read,
that line, the one of the parenthesis or quote that was not closed, and the one of the form around."
  (cond ((null *file*) nil)
        ((typep condition 'reading-error)
         (format nil "~a:~d~@[, opened in line ~d, form of line ~d~]" *file* (reading-error-line condition)
                 (reading-error-opened condition) *form-line*))
        (t (format nil "~a:~d" *file* *form-line*))))

(defun script-function-p (function)
  (and (functionp function)
       (or (built-in-name function)
           (let ((name (ext:compiled-function-name function)))
             (and name (symbolp name) (eq (symbol-package name) (find-package :lom-user)))))))

(defun calls-since (frame)
  "The names of the functions called since FRAME, the innermost first, of which twenty will do."
  (loop for each from (si:ihs-top) downto (1+ frame)
        for function = (si:ihs-fun each)
        when (script-function-p function)
          collect (function-name function) into names
          and count t into length
        until (eql length 20)
        finally (return names)))

(defun tell-script (text)
  "Calls the script's *error* with TEXT, if there is one. Gives the text of the error and whether it was told."
  (let ((handler (symbol-value 'lom-user::*error*)))
    (if handler
        (handler-case (progn (funcall (as-function handler) text)
                             (values text t))
          (serious-condition (condition) (values (error-text condition) nil)))
        (values text nil))))

(defun outcome (condition frame)
  "The values of EVALUATE-TEXT for an error. The script's variables still have the values they had there."
  (let ((calls (calls-since frame))
        (place (place condition)))
    (multiple-value-bind (text told)
        (if (typep condition 'stopped)
            (values (error-text condition) nil)
            (tell-script (error-text condition)))
      (values nil text calls place told))))

(defun evaluate-text (text &optional file (line 1))
  "Evaluates all forms of TEXT, which begins at LINE of FILE. Gives the value of the last, the text of
the error that ended it, the names of the functions that were being called, the place, and whether the
script's own *error* was called."
  (let ((frame (si:ihs-top)))
    (block nil
      (handler-bind ((serious-condition (lambda (condition) (return (outcome condition frame)))))
        (values (evaluate-forms text file line) nil '() nil nil)))))

;;; LOAD

(defun callable-p (value)
  (or (functionp value) (and value (symbolp value) (functionp (symbol-value value)))))

(define load ((name string) &rest on-failure)
  (let ((path (or (find-file (concatenate 'string name ".lsp")) (find-file name))))
    (cond (path (evaluate-forms (file-text path) path 1))
          ((null on-failure) (fail "LOAD failed: ~a" (prin1-text name)))
          ((cdr on-failure) (fail "too many arguments"))
          ((callable-p (car on-failure)) (funcall (as-function (car on-failure))))
          (t (car on-failure)))))
