;;;; Points, which are lists of two or three numbers.

(in-package lom)

(defun reals (point)
  (mapcar (lambda (number) (coerce number 'double-float)) point))

(defun first-two (point)
  (list (first point) (second point)))

(defun alike (points)
  "POINTS of reals, all of them with the z coordinate or none."
  (mapcar (if (every #'third points) #'reals (lambda (point) (reals (first-two point)))) points))

(defun minus (a b)
  (mapcar #'- a b))

(defun dot (a b)
  (reduce #'+ (mapcar #'* a b)))

(define distance ((from point) (to point))
  (let ((way (apply #'minus (alike (list from to)))))
    (result (sqrt (dot way way)))))

(define angle ((from point) (to point))
  (destructuring-bind (x y) (apply #'minus (mapcar #'first-two (alike (list to from))))
    (if (= 0 x y) 0d0 (mod (atan y x) (* 2 *pi*)))))

(define polar ((from point) (angle number) (distance number))
  (destructuring-bind (x y &optional z) (reals from)
    (list* (result (+ x (* distance (cos (coerce angle 'double-float)))))
           (result (+ y (* distance (sin (coerce angle 'double-float)))))
           (if z (list z)))))

(defun cross (a b)
  (destructuring-bind (ax ay &optional (az 0)) a
    (destructuring-bind (bx by &optional (bz 0)) b
      (list (- (* ay bz) (* az by)) (- (* az bx) (* ax bz)) (- (* ax by) (* ay bx))))))

(defun size (vector)
  (sqrt (dot vector vector)))

(defun crossing (a b c d on-segments)
  "Where the line through A and B meets that through C and D; nil when they are parallel or pass each other."
  (let* ((along (minus b a)) (other (minus d c)) (between (minus c a))
         (normal (cross along other))
         (square (dot normal normal)))
    (unless (or (<= (sqrt square) (* 1d-12 (size along) (size other)))
                (> (abs (dot normal between)) (* 1d-9 (sqrt square) (+ (size along) (size between)))))
      (let ((s (/ (dot (cross between other) normal) square))
            (u (/ (dot (cross between along) normal) square)))
        (if (or (not on-segments) (and (on-segment-p s) (on-segment-p u)))
            (mapcar (lambda (start step) (result (+ start (* s step)))) a along))))))

(defun on-segment-p (part)
  (<= -1d-9 part 1.000000001d0))

(define inters ((a point) (b point) (c point) (d point) &rest on-segments)
  (if (cdr on-segments)
      (fail "too many arguments"))
  ;; Left out is not the same as nil.
  (apply #'crossing (append (alike (list a b c d)) (or on-segments '(t)))))
