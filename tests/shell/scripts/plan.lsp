; A module that works on a floor plan.

(progn (arxload "plan.so") (open-drawing "plan.dxf") nil)
(sslength (ssget "X"))

(BILL-OF-MATERIALS "TYPE")
(BILL-OF-MATERIALS "NO-SUCH-TAG")
(assoc '("DOOR" . "Badtür") (BILL-OF-MATERIALS "TYPE"))
(LAYER-TOTALS)
; four columns of radius 0.15
(equal (cdr (assoc "COLUMNS" (LAYER-TOTALS))) (list (* 4 2 pi 0.15) (* 4 pi 0.15 0.15)) 1e-9)
; the outline inside and outside, the walls between
(caddr (assoc "WALLS" (LAYER-TOTALS)))

(MOVE-TO-LAYER '((0 . "INSERT") (2 . "CHAIR")) "SEATS")
(sslength (ssget "X" '((8 . "SEATS"))))
(MOVE-TO-LAYER '((0 . "CIRCLE") (-4 . "<=") (40 . 0.2)) "STRUCTURE")
(MOVE-TO-LAYER '((0 . "CIRCLE") (-4 . ">") (40 . 0.2)) "STRUCTURE")
(cdr (assoc 2 (tblsearch "LAYER" "SEATS")))

(REPLACE-TEXTS '("Wohnzimmer" "Küche" "Flur") '("Living room" "Kitchen" "Hall"))
(sslength (ssget "X" '((0 . "TEXT") (1 . "Hall"))))
(REPLACE-TEXTS '("Zimmertür" "Badtür" "Haustür") '("room door" "bath door" "front door"))
(cdr (assoc '("DOOR" . "room door") (BILL-OF-MATERIALS "TYPE")))
(REPLACE-TEXTS nil nil)
(REPLACE-TEXTS '("no such text") '("never"))

(TAG-ENTITIES '((0 . "LWPOLYLINE") (8 . "AREAS")) "LOM_PLAN" '("checked" 2026 2.5))
(length (READ-TAGS "LOM_PLAN"))
(car (READ-TAGS "LOM_PLAN"))
(READ-TAGS "NO_SUCH_APPLICATION")
(assoc -3 (entget (ssname (ssget "X" '((-3 ("LOM_PLAN")))) 0) '("LOM_PLAN")))

; nothing of it was kept on the host's heap
(memory)

; wrong arguments: nothing changes
(MOVE-TO-LAYER '((-4 . "<OR") (0 . "LINE")) "SEATS")
(MOVE-TO-LAYER '((0 . "LINE")) "no*layer")
(BILL-OF-MATERIALS 17)
(TAG-ENTITIES nil 5 '("x"))
(READ-TAGS 5)
(MOVE-TO-LAYER 'symbol "X")
(REPLACE-TEXTS 5 5)

; saved and opened again, all of it is there
(save-drawing "changed.dxf")
(progn (new-drawing) (ssget "X"))
(progn (open-drawing "changed.dxf") (sslength (ssget "X" '((8 . "SEATS")))))
(cdr (assoc '("DOOR" . "front door") (BILL-OF-MATERIALS "TYPE")))
(car (READ-TAGS "LOM_PLAN"))
(arxunload "plan.so")
