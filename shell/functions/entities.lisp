;;;; Entities of the drawing.

(in-package lom)

(define entget ((entity entity-name) &optional (applications proper-list))
  (dolist (application applications)
    (if (not (stringp application)) (bad-type "stringp" application)))
  (call-host "entget" entity applications))

(define entmod ((groups proper-list))
  (if (call-host "entmod" groups) groups))

(define entmake (&optional (groups proper-list))
  (if (call-host "entmake" groups) groups))

(define entmakex (&optional (groups proper-list))
  (call-host "entmakex" groups))

(define entdel ((entity entity-name))
  (if (call-host "entdel" entity) entity))

(define entlast ()
  (call-host "entlast"))

(define entnext (&optional (entity entity-name))
  (call-host "entnext" entity))

(define entupd ((entity entity-name))
  (if (call-host "entupd" entity) entity))

(define handent ((handle string))
  (call-host "handent" handle))

(define regapp ((application string))
  (if (call-host "regapp" application) application))
