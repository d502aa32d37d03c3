;;;; Questions to the user.

(in-package lom)

(define initget (&rest arguments)
  (let ((flags (if (integerp (car arguments)) (pop arguments) 0))
        (keywords (if (stringp (car arguments)) (pop arguments) "")))
    (if arguments
        (bad-type "stringp" (car arguments)))
    (call-host "initget" flags keywords)
    nil))

(defun point-and-prompt (arguments)
  "The base point and the prompt, of which each may be left out."
  (let ((point (if (point-p (car arguments)) (pop arguments)))
        (prompt (if (stringp (car arguments)) (pop arguments))))
    (if (car arguments)
        (bad-type "stringp" (car arguments)))
    (list point (or prompt ""))))

(define getstring (&rest arguments)
  (let* ((prompt (if (stringp (car (last arguments))) (car (last arguments)) ""))
         (blanks (if (stringp (car arguments)) nil (car arguments))))
    (if (cddr arguments)
        (fail "too many arguments"))
    (if (and (cdr arguments) (not (stringp (second arguments))))
        (bad-type "stringp" (second arguments)))
    (call-host "getstring" (if blanks t nil) prompt)))

(define getint (&optional (prompt string))
  (call-host "getint" (or prompt "")))

(define getreal (&optional (prompt string))
  (call-host "getreal" (or prompt "")))

(define getkword (&optional (prompt string))
  (call-host "getkword" (or prompt "")))

(define getpoint (&rest arguments)
  (apply #'call-host "getpoint" (point-and-prompt arguments)))

(define getcorner ((point point) &optional (prompt string))
  (call-host "getcorner" point (or prompt "")))

(define getdist (&rest arguments)
  (apply #'call-host "getdist" (point-and-prompt arguments)))

(define getangle (&rest arguments)
  (apply #'call-host "getangle" (point-and-prompt arguments)))

(define getorient (&rest arguments)
  (apply #'call-host "getangle" (point-and-prompt arguments)))

(define entsel (&optional (prompt string))
  (call-host "entsel" prompt))

(define answer (&rest answers)
  (apply #'call-host "answer" (mapcar #'typed-answer answers)))

(defun typed-answer (answer)
  "Numbers are answered as they would be typed."
  (if (numberp answer) (prin1-text answer) answer))
