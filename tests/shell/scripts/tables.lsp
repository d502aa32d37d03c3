; Tables of a new drawing and of one that is opened.

(assoc 62 (tblsearch "LAYER" "0"))
(equal (tblsearch "layer" "0") (tblsearch "LAYER" "0"))
(tblsearch "LAYER" "NO-SUCH-LAYER")
(tblsearch "NO-SUCH-TABLE" "0")
(cdr (assoc 2 (tblsearch "LTYPE" "continuous")))
(cdr (assoc 2 (tblsearch "STYLE" "STANDARD")))
(mapcar '(lambda (table) (cdr (assoc 0 (tblnext table T)))) '("LAYER" "LTYPE" "STYLE" "APPID" "VPORT" "DIMSTYLE" "UCS" "VIEW" "BLOCK"))

(open-drawing "plan.dxf")
(defun names (table / entry found) (while (setq entry (tblnext table (null found))) (setq found (cons (cdr (assoc 2 entry)) found))) (reverse found))
(vl-sort (mapcar 'strcase (names "LAYER")) '<)
(names "BLOCK")
(tblnext "UCS" T)
(progn (setq entry (tblnext "LAYER" T)) (cdr (assoc 2 entry)))
(equal (tblnext "LAYER") entry)
(equal (tblnext "LAYER" T) entry)
(equal (tblnext "LAYER" nil) entry)

; a search can say where the next entries begin
(cdr (assoc 2 (tblsearch "LAYER" "DOORS" T)))
(progn (setq after-doors (tblnext "LAYER")) (cdr (assoc 2 after-doors)))
(equal (cdr (assoc 2 after-doors)) (cadr (member "DOORS" (names "LAYER"))))
(cdr (assoc 2 (tblsearch "LAYER" "DOORS")))
(tblnext "LAYER")

; names of entries
(setq layer (tblobjname "LAYER" "doors"))
(type layer)
(cdr (assoc 2 (entget layer)))
(tblobjname "LAYER" "NO-SUCH-LAYER")
(tblobjname "NO-SUCH-TABLE" "0")
(equal (entmod (list (cons -1 layer) '(62 . 3))) (list (cons -1 layer) '(62 . 3)))
(assoc 62 (tblsearch "LAYER" "DOORS"))
(type (tblobjname "BLOCK" "DOOR"))

; a block's first entity, and from there to its last
(defun types (entity / found) (while entity (setq found (cons (cdr (assoc 0 (entget entity))) found) entity (entnext entity))) (reverse found))
(types (cdr (assoc -2 (tblsearch "BLOCK" "DOOR"))))

; wrong arguments
(tblsearch 5 "0")
(tblsearch "LAYER" nil)
(tblsearch "LAYER")
(tblsearch "LAYER" "0" T 1)
(tblnext)
(tblnext 'layer)
(tblnext "LAYER" T 1)
(tblobjname "LAYER" 0)
(tblobjname "LAYER")
(tblsearch "" "")
