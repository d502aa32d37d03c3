;;;; WCMATCH: patterns with # @ . * ? ~ [...] [~...] - ` and alternatives between commas.

(in-package lom)

(defvar *class-tests*
  (list (cons #\# #'digit-char-p)
        (cons #\@ #'alpha-char-p)
        (cons #\. (lambda (char) (not (alphanumericp char))))
        (cons #\? #'characterp))
  "What one character of a pattern lets one of the text be.")

(defun set-test (text)
  "The test for what stands between brackets: characters, ranges, a ~ before those that are not meant."
  (let ((negated (char= (char-at text 0) #\~)))
    (lambda (char)
      (not (eq negated (in-set-p char text (if negated 1 0)))))))

(defun in-set-p (char set start)
  (do ((at start))
      ((>= at (length set)) nil)
    (if (and (char= (char-at set (1+ at)) #\-) (< (+ 2 at) (length set)))
        (if (char<= (char set at) char (char set (+ 2 at))) (return t) (incf at 3))
        (if (char= (char set at) char) (return t) (incf at)))))

(defun pattern-item (pattern at)
  "What PATTERN says at AT, a test of one character, :STAR or :COMMA, and where that ends."
  (let* ((char (char pattern at))
         (class (cdr (assoc char *class-tests*)))
         (bracket (if (char= char #\[) (position #\] pattern :start (min (+ 2 at) (length pattern))))))
    (cond (class (values class (1+ at)))
          (bracket (values (set-test (subseq pattern (1+ at) bracket)) (1+ bracket)))
          ((char= char #\*) (values :star (1+ at)))
          ((char= char #\,) (values :comma (1+ at)))
          ((and (char= char #\`) (< (1+ at) (length pattern)))
           (values (same-character (char pattern (1+ at))) (+ 2 at)))
          (t (values (same-character char) (1+ at))))))

(defun same-character (wanted)
  (lambda (char) (char= char wanted)))

(defun alternatives (pattern)
  "Each alternative of PATTERN as (negated item...)."
  (let ((result '()) (items '()) (negated nil) (first t) (at 0))
    (loop
      (when (>= at (length pattern))
        (return (nreverse (cons (cons negated (nreverse items)) result))))
      (multiple-value-bind (item end) (pattern-item pattern at)
        (cond ((eq item :comma)
               (push (cons negated (nreverse items)) result)
               (setq items '() negated nil first t))
              ((and first (char= (char pattern at) #\~))
               (setq negated t first nil))
              (t (push item items)
                 (setq first nil)))
        (setq at end)))))

(defun items-match-p (items text)
  "Goes back to the last star only, which is enough and keeps the time within the product of the lengths."
  (let ((at 0) (star nil) (star-at 0))
    (loop
      (cond ((equal items '(:star)) (return t))
            ((eq (car items) :star) (setq star (cdr items) items star star-at at))
            ((= at (length text)) (return (null items)))
            ((and items (funcall (car items) (char text at))) (pop items) (incf at))
            (star (incf star-at) (setq items star at star-at))
            (t (return nil))))))

(defun alternative-matches-p (alternative text)
  (not (eq (car alternative) (items-match-p (cdr alternative) text))))

(define wcmatch ((text string) (pattern string))
  (if (some (lambda (alternative) (alternative-matches-p alternative text)) (alternatives pattern))
      t))
