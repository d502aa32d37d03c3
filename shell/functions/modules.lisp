;;;; Client modules.

(in-package lom)

(defun with-failure (on-failure action)
  "What ACTION gives; the first of ON-FAILURE instead where it fails and there is one."
  (cond
    ((null on-failure) (funcall action))
    ((cdr on-failure) (fail "too many arguments"))
    (t
     (handler-case (funcall action)
       (script-error ()
         (if (callable-p (car on-failure)) (funcall (as-function (car on-failure))) (car on-failure)))))))

(defun module-file (name)
  (or (find-file name) (find-file (concatenate 'string name ".so")) (native-path name)))

(define arxload ((name string) &rest on-failure)
  (with-failure on-failure (lambda ()
                             (call-host "arxload" (module-file name))
                             name)))

(define arxunload ((name string) &rest on-failure)
  (with-failure on-failure (lambda () (call-host "arxunload" (file-namestring (native-path name))))))

(define arx ()
  (call-host "arx"))
