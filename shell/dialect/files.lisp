;;;; Output, input and files.

(in-package lom)

(defvar *write-hook* (lambda (text) (write-string text *standard-output*))
  "Called with each text that a script shows.")

(defvar *read-line-hook* (lambda () (read-line *standard-input* nil))
  "Called for a line of what the user types; nil at its end.")

(defvar *search-path* '()
  "Folders in which files are looked for, each with a slash at its end.")

(defun put (text file)
  (if file
      (write-string text (script-file-stream file))
      (funcall *write-hook* text)))

(defun check-file (file)
  (if (or (null file) (open-file-p file)) file (bad-type "streamp" file)))

(defun show (arguments value-text)
  "Writes what VALUE-TEXT makes of the value, which is the first of ARGUMENTS, to the file that is the second."
  (cond ((null arguments) (host-symbol ""))     ; prints as nothing, which ends a command quietly
        ((cddr arguments) (fail "too many arguments"))
        (t (put (funcall value-text (first arguments)) (check-file (second arguments)))
           (first arguments))))

(define princ (&rest arguments)
  (show arguments #'princ-text))

(define prin1 (&rest arguments)
  (show arguments #'prin1-text))

(define print (&rest arguments)
  (show arguments (lambda (value) (format nil "~%~a " (prin1-text value)))))

(define prompt ((text string))
  (put text nil)
  nil)

(define terpri ()
  (put (string #\Newline) nil)
  nil)

(define write-line ((text string) &optional (file file))
  (put (format nil "~a~%" text) file)
  text)

(define write-char ((code integer) &optional (file file))
  (put (string (code-character code)) file)
  code)

;;; Paths

(defun native-path (name)
  (substitute #\/ #\\ name))

(defun existing-file (name)
  "The full path of the file NAME, nil where there is none that could be read."
  (let ((path (ignore-errors (probe-file (native-path name)))))
    (if (and path (or (pathname-name path) (pathname-type path)))
        (namestring path))))

(defun find-file (name)
  (or (existing-file name)
      (some (lambda (folder) (existing-file (concatenate 'string folder name))) *search-path*)))

(define findfile ((name string))
  (find-file name))

;;; Reading

(defun text-in (path external-format)
  (with-open-file (in path :external-format external-format)
    (let* ((text (make-string (file-length in)))
           (end (read-sequence text in)))
      (subseq text 0 end))))

(defun file-text (path)
  "The file's text. What is not UTF-8 is taken for the older coding, in which each byte is a character."
  (handler-case (text-in path :utf-8)
    (ext:character-decoding-error () (text-in path :latin-1))))

(defun open-file (path mode)
  (cond ((string= mode "r") (make-string-input-stream (file-text path)))
        ((string= mode "w") (open path :direction :output :if-exists :supersede :external-format :utf-8))
        ((string= mode "a") (open path :direction :output :if-exists :append :if-does-not-exist :create
                                       :external-format :utf-8))
        (t (fail "bad argument value: mode: ~a" (prin1-text mode)))))

(define open ((name string) (mode string))
  (let ((path (native-path name)))
    (handler-case (make-script-file :path path :stream (open-file path (string-downcase mode)))
      ((or file-error stream-error) () nil))))

(define close ((file file))
  (close (script-file-stream file))
  nil)

(defvar *typed* ""
  "What the user typed and READ-CHAR has not yet given.")

(defun input-line (file)
  (let ((line (if file
                  (read-line (script-file-stream file) nil)
                  (funcall *read-line-hook*))))
    (if line (string-right-trim '(#\Return) line))))

(define read-line (&optional (file file))
  (input-line file))

(defun typed-char ()
  (if (string= *typed* "")
      (setq *typed* (format nil "~@[~a~%~]" (funcall *read-line-hook*))))
  (unless (string= *typed* "")
    (prog1 (char *typed* 0)
      (setq *typed* (subseq *typed* 1)))))

(define read-char (&optional (file file))
  (let ((char (if file (read-char (script-file-stream file) nil) (typed-char))))
    (if char (char-code char))))
