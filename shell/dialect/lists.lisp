;;;; Lists.

(in-package lom)

(defmacro define-access-functions ()
  "CAR to CDDDDR."
  `(progn
     ,@(loop for name in '(car cdr caar cadr cdar cddr caaar caadr cadar caddr cdaar cdadr cddar cdddr
                           caaaar caaadr caadar caaddr cadaar cadadr caddar cadddr
                           cdaaar cdaadr cdadar cdaddr cddaar cddadr cdddar cddddr)
             collect `(define ,name (list) (,name list)))))

(define-access-functions)

(define cons (first rest)
  (cons first rest))

(define list (&rest values)
  values)

(define append (&rest (lists list))
  (apply #'append lists))

(define reverse ((list proper-list))
  (reverse list))

(define length ((list proper-list))
  (length list))

(define nth ((index integer) (list list))
  (if (minusp index)
      (fail "bad argument value: non-negative: ~d" index)
      (car (nthcdr (min index (length-of-conses list)) list))))

(defun length-of-conses (list)
  (do ((rest list (cdr rest))
       (length 0 (1+ length)))
      ((atom rest) length)))

(define last ((list list))
  (car (last list)))

(define member (value (list proper-list))
  (member value list :test #'equal-values))

(define assoc (key (list proper-list))
  (dolist (pair list)
    (cond ((atom pair) (fail "bad association list: ~a" (prin1-text list)))
          ((equal-values key (car pair)) (return pair)))))

(defun substitute-in (new old value)
  "VALUE with NEW wherever OLD is in it; long lists take no stack."
  (let ((members '()))
    (do () ((or (atom value) (equal-values old value)))
      (push (substitute-in new old (pop value)) members))
    (nreconc members (if (equal-values old value) new value))))

(define subst (new old (list list))
  (substitute-in new old list))

(define vl-list* (first &rest more)
  (apply #'list* first more))

(define vl-list-length ((list list))
  (list-length-or-nil list))

(define vl-position (value (list proper-list))
  (position value list :test #'equal-values))

(define vl-remove (value (list proper-list))
  (remove value list :test #'equal-values))

(define vl-remove-if (function (list proper-list))
  (remove-if (as-function function) list))

(define vl-remove-if-not (function (list proper-list))
  (remove-if-not (as-function function) list))

(define vl-member-if (function (list proper-list))
  (member-if (as-function function) list))

(define vl-member-if-not (function (list proper-list))
  (member-if-not (as-function function) list))

(define vl-every (function (first proper-list) &rest (more proper-list))
  (if (apply #'every (as-function function) first more) t))

(define vl-some (function (first proper-list) &rest (more proper-list))
  (apply #'some (as-function function) first more))

;;; Sorting

(defun without-repeated-atoms (sorted)
  "As the host does, sorting keeps one only of equal integers or symbols."
  (loop for (value . rest) on sorted
        unless (and rest (typep value '(or integer symbol)) (eql value (car rest)))
          collect value))

(define vl-sort ((list proper-list) function)
  (without-repeated-atoms (stable-sort (copy-list list) (as-function function))))

(define vl-sort-i ((list proper-list) function)
  (mapcar #'cdr
          (stable-sort (loop for value in list
                             for index from 0
                             collect (cons value index))
                       (as-function function)
                       :key #'car)))
