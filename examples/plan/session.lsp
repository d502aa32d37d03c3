; Calls of the module that works on a floor plan, one a line.

; What has to be bought, by block and type.
(BILL-OF-MATERIALS "TYPE")
; Lengths and areas, layer by layer.
(LAYER-TOTALS)
; Chairs and slender columns get layers of their own, which are made.
(MOVE-TO-LAYER '((0 . "INSERT") (2 . "CHAIR")) "SEATS")
(MOVE-TO-LAYER '((0 . "CIRCLE") (-4 . "<=") (40 . 0.2)) "STRUCTURE")
; Translates the texts, those of attributes too.
(REPLACE-TEXTS '("Wohnzimmer" "Küche" "Flur" "Schlafzimmer" "Bad" "Arbeitsräume") '("Living room" "Kitchen" "Hall" "Bedroom" "Bath" "Study"))
(REPLACE-TEXTS '("Zimmertür" "Badtür" "Haustür") '("room door" "bath door" "front door"))
(BILL-OF-MATERIALS "TYPE")
; Data of our own on every area, and what can be read back.
(TAG-ENTITIES '((0 . "LWPOLYLINE") (8 . "AREAS")) "LOM_PLAN" '("checked" 2026 2.5))
(READ-TAGS "LOM_PLAN")

; Bad input: nothing changes.
(MOVE-TO-LAYER '((-4 . "<OR") (0 . "LINE")) "SEATS")
(MOVE-TO-LAYER '((0 . "LINE")) "no*layer")
(BILL-OF-MATERIALS 17)
