; The example module's functions on everything that a drawing holds.
(BILL-OF-MATERIALS "TYPE")
(LAYER-TOTALS)
(MOVE-TO-LAYER nil "MOVED")
(TAG-ENTITIES nil "LOM_PLAN" '("Größe" 2026 2.5))
(READ-TAGS "LOM_PLAN")
(REPLACE-TEXTS '("Türöffnung, Größe 2 m²") '("Δ Ж 中 door opening"))
