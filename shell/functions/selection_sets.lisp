;;;; Selection sets. The host has only so many at a time, so those that no script can reach any more are
;;;; given back to it.

(in-package lom)

(defvar *sets* '()
  "Of each set that LISP made a weak pointer and a name like its own.")

(defun overwrite-stack (depth)
  "What earlier calls have left behind on the stack would look to the collector as if it were in reach."
  (let ((a nil) (b nil) (c nil))
    (if (plusp depth) (overwrite-stack (1- depth)))
    (list a b c)))

(defun forget-sets ()
  "Gives the host back what is out of reach."
  (overwrite-stack 200)
  (ext:gc t)
  (setq *sets*
        (delete-if (lambda (entry)
                     (when (null (ext:weak-pointer-value (car entry)))
                       (call-host "ssfree" (cdr entry))
                       t))
                   *sets*)))

(defvar *sets-to-look-at* 64
  "With so many sets it is worth looking for those that are out of reach, which takes its time.")

(defun new-set (make)
  "The set that MAKE gives, if it gives one."
  (when (>= (length *sets*) *sets-to-look-at*)
    (forget-sets)
    (setq *sets-to-look-at* (max 64 (min 120 (+ 32 (length *sets*))))))
  (let ((set (funcall make)))
    (if set
        (push (cons (ext:make-weak-pointer set) (copy-selection-set set)) *sets*))
    set))

(define ssget (&rest arguments)
  (new-set (lambda () (apply #'call-host "ssget" arguments))))

(define ssadd (&optional (entity entity-name) (set selection-set))
  (cond (set (if (call-host "ssadd" entity set) set))
        (t (new-set (lambda () (call-host "ssadd" entity nil))))))

(define ssdel ((entity entity-name) (set selection-set))
  (if (call-host "ssdel" entity set) set))

(define ssmemb ((entity entity-name) (set selection-set))
  (if (call-host "ssmemb" entity set) entity))

(define sslength ((set selection-set))
  (call-host "sslength" set))

(define ssname ((set selection-set) (position number))
  (if (< -1 position 2147483648)
      (call-host "ssname" set (truncate position))))
