;;;; What the program calls: texts to be evaluated, and what came of them.

(in-package lom)

(ext:trap-fpe t nil)    ; a real that is out of range must not stop the program around

;;; ECL raises an error when the machine's stack is full, but may leave the program when one of these is:
;;; they must be the larger ones.
(ext:set-limit 'ext:frame-stack 100000)
(ext:set-limit 'ext:binding-stack 200000)

(defvar *file* nil "The file that is being evaluated, nil for what was typed.")
(defvar *form-line* 1 "Where in it the form begins that is being evaluated.")

(set (host-symbol "PI") *pi*)
(set (host-symbol "PAUSE") "\\")
(host-symbol "*ERROR*")

(defun print-value (value)
  "VALUE as the prompt shows it. Lists may be nested more deeply than the stack allows."
  (handler-case (prin1-text value)
    (serious-condition (condition) (format nil "; error: ~a" (error-text condition)))))

(defun completions (beginning)
  "The names that begin so, in order, of the symbols that have a value."
  (let ((beginning (string-upcase beginning)) (names '()))
    (do-symbols (symbol :lom-user (sort names #'string<))
      (if (and (eql 0 (search beginning (symbol-name symbol))) (boundp symbol) (symbol-value symbol))
          (push (symbol-name symbol) names)))))

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
  ;; ECL finds a frame by counting down from the top, so that looking at all of a full stack takes seconds.
  (loop with top = (si:ihs-top)
        for each downfrom top above (max frame (- top 1000))
        for function = (si:ihs-fun each)
        when (script-function-p function)
          collect (function-name function) into names
        until (= (length names) 20)
        finally (return names)))

(defun tell-script (handler text)
  "Calls HANDLER, the value of *error*, with TEXT. Gives the text of the error and whether it was told."
  (if handler
      (handler-case (progn (funcall (as-function handler) text)
                           (values text t))
        (serious-condition (condition) (values (error-text condition) nil)))
      (values text nil)))

(defun outcome-of (condition frame)
  "A function that tells the script of CONDITION and gives the values of EVALUATE-TEXT."
  (let ((handler (if (typep condition 'stopped) nil (symbol-value 'lom-user::*error*)))
        (text (error-text condition))
        (calls (calls-since frame))
        (place (place condition)))
    (lambda ()
      (multiple-value-bind (text told) (tell-script handler text)
        (values nil text calls place told)))))

(defun evaluate-text (text &optional file (line 1))
  "Evaluates all forms of TEXT, which begins at LINE of FILE. Gives the value of the last, the text of
the error that ended it, the names of the functions that were being called, the place, and whether the
script's own *error* was called."
  (let ((frame (si:ihs-top)) (outcome nil))
    (block evaluation
      (handler-bind ((serious-condition
                       (lambda (condition)
                         (setq outcome (outcome-of condition frame))
                         ;; *error* sees the variables as they were at the error, if the stack has room for it.
                         (unless (typep condition 'ext:stack-overflow)
                           (return-from evaluate-text (funcall outcome)))
                         (return-from evaluation))))
        (return-from evaluate-text
          (values (evaluate-forms text file line) nil '() nil nil))))
    (funcall outcome)))

;;; LOAD

;;; Scripts begin with it; here the functions are there from the start.
(define vl-load-com ()
  nil)

(defun callable-p (value)
  (or (functionp value) (and value (symbolp value) (functionp (symbol-value value)))))

(define load ((name string) &rest on-failure)
  (let ((path (or (find-file (concatenate 'string name ".lsp")) (find-file name))))
    (cond (path (evaluate-forms (file-text path) path 1))
          ((null on-failure) (fail "LOAD failed: ~a" (prin1-text name)))
          ((cdr on-failure) (fail "too many arguments"))
          ((callable-p (car on-failure)) (funcall (as-function (car on-failure))))
          (t (car on-failure)))))
