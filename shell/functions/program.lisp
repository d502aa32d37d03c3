;;;; What the session gives beyond the host's own LISP.

(in-package lom)

(define lom-return-flag (&rest flag)
  (let ((symbol (host-symbol "LOM_RETURNFLAG")))
    (cond ((null flag) (symbol-value symbol))
          ((cdr flag) (fail "too many arguments"))
          (t (set symbol (car flag))))))

(define memory ()
  (call-host "memory"))

(define trace-host (on)
  (call-host "trace-host" on))

(define open-drawing ((name string))
  (call-host "open-drawing" (or (find-file name) (native-path name)))
  name)

(define save-drawing (&optional (name string))
  (call-host "save-drawing" (if name (native-path name))))

(define new-drawing ()
  (call-host "new-drawing"))

(define changes ()
  (call-host "changes"))

(define draw (&optional what name)
  (let ((set (if (selection-set-p what) what))
        (name (if (stringp what) what name)))
    (cond ((and what (not (stringp what)) (null set)) (bad-type "lselsetp" what))
          ((and name (not (stringp name))) (bad-type "stringp" name))
          (t (call-host "draw" set (if name (native-path name)))))))

;;; Entry points of the program

(defun evaluate-for-program (text file line)
  "Like EVALUATE-TEXT, with the value as the prompt shows it in place of the value."
  (multiple-value-bind (value problem calls place told) (evaluate-text text file line)
    (list (if problem "" (print-value value)) problem calls place told)))

(defun form-places (*text*)
  "Where each form of the text begins and ends, and the line in which it begins. A form that cannot be
read reaches to the end."
  (let ((*position* 0) (*line* 1) (places '()))
    (loop
      (skip-blanks)
      (if (null (peek))
          (return (nreverse places)))
      (let ((start *position*) (line *line*))
        (handler-case (read-form)
          (serious-condition () (setq *position* (length *text*))))
        (push (list start *position* line) places)))))

(defun command-defined-p (name)
  "Whether the command NAME, in upper case, is a function of a script or a module."
  (callable-p (host-symbol (concatenate 'string "C:" name))))
