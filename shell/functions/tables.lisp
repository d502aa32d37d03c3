;;;; Tables of the drawing.

(in-package lom)

(define tblsearch ((table string) (name string) &optional set-next)
  (call-host "tblsearch" table name set-next))

(define tblnext ((table string) &optional rewind)
  (call-host "tblnext" table rewind))

(define tblobjname ((table string) (name string))
  (call-host "tblobjname" table name))
