;;;; The two packages: LOM holds the dialect's own code, LOM-USER the symbols of scripts.

(defpackage lom
  (:use common-lisp)
  (:export evaluate-text print-value text-complete-p completions
           define-host-function host-symbol raise
           *write-hook* *read-line-hook* *system-variable-hook* *search-path* *interrupted*
           entity-name make-entity-name entity-name-high entity-name-low
           selection-set make-selection-set selection-set-high selection-set-low))

;;; NIL and T are those of Common Lisp, so that its predicates answer scripts as they stand.
(defpackage lom-user
  (:use)
  (:import-from common-lisp nil t))

(in-package lom)

(defun host-symbol (name)
  "The script's symbol NAME. A symbol is a dynamic variable, nil until it is set."
  (let ((symbol (intern name :lom-user)))
    (unless (boundp symbol)
      (proclaim (list 'special symbol))
      (set symbol nil))
    symbol))
