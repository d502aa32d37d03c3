;;;; Evaluates each form of the scripts in dialect/ and writes what the prompt would show beside it.
;;;; Arguments: the folder of the dialect, the folder for the transcripts, the scripts.

(defpackage dialect-test (:use common-lisp))
(in-package dialect-test)

(destructuring-bind (dialect transcripts &rest scripts) (cdr (member "--" (ext:command-args) :test #'string=))
  (load (concatenate 'string dialect "/load.lisp"))
  (defparameter *transcripts* transcripts)
  (defparameter *scripts* scripts))

;;; What scripts need in order to test what the program around them does.

(defmacro define-for-tests (name parameters &body body)
  `(lom:define-host-function ,(string name) (lambda ,parameters ,@body)))

(define-for-tests test-entity (high low)
  (lom:make-entity-name :high high :low low))

(define-for-tests test-set (high low)
  (lom:make-selection-set :high high :low low))

(define-for-tests test-interrupt (how)
  (setq lom:*interrupted* (if (member how '(t nil)) how :stop))
  nil)

(lom:define-host-function "TEST-MODULE-FUNCTION" (lambda () 1) "EXRXSUBR")

(define-for-tests test-complete (text)
  (lom:text-complete-p text))

(define-for-tests test-completions (beginning)
  (lom:completions beginning))

(defvar *variables* '())
(setq lom:*system-variable-hook* (lambda (name) (cdr (assoc name *variables* :test #'string=))))

(define-for-tests test-variable (name value)
  (push (cons name value) *variables*)
  value)

(defvar *typed-lines* '())
(setq lom:*read-line-hook* (lambda () (pop *typed-lines*)))

(define-for-tests test-typed (lines)
  (setq *typed-lines* lines))

(define-for-tests test-bytes (path bytes)
  (with-open-file (out path :direction :output :element-type '(unsigned-byte 8))
    (write-sequence bytes out))
  nil)

;;; Transcripts

(defun form-texts (text)
  "The text of each form and the line where it begins; what cannot be read is the last."
  (let ((lom::*text* text) (lom::*position* 0) (lom::*line* 1) (forms '()))
    (loop
      (lom::skip-blanks)
      (if (null (lom::peek))
          (return (nreverse forms)))
      (let ((start lom::*position*) (line lom::*line*))
        (handler-case (lom::read-form)
          (error () (setq lom::*position* (length text))))
        (push (cons line (subseq text start lom::*position*)) forms)))))

(defun transcribe (text line file out)
  (format out "~a~%" text)
  (let ((written (make-string-output-stream)))
    (multiple-value-bind (value problem calls place told)
        (let ((lom:*write-hook* (lambda (text) (write-string text written))))
          (lom:evaluate-text text file line))
      (format out "~{  | ~a~%~}" (lines (get-output-stream-string written)))
      (if problem
          (format out "  ; error: ~a~:[~; (told)~]~%  ; ~a~{ ~a~}~%" problem told place (names calls))
          (format out "  ~a~%" (lom:print-value value))))))

(defun names (calls)
  "Where the stack was full, which function was the innermost is chance."
  (if (< (length calls) 20)
      calls
      (append (sort (remove-duplicates calls :test #'string=) #'string<) '("..."))))

(defun lines (text)
  (with-input-from-string (in text)
    (loop for line = (read-line in nil)
          while line
          collect line)))

(dolist (script *scripts*)
  (with-open-file (out (format nil "~a/~a.out" *transcripts* (pathname-name script))
                       :direction :output :if-exists :supersede)
    (loop for (line . text) in (form-texts (lom::file-text script))
          do (transcribe text line (file-namestring script) out))))
(ext:quit 0)
