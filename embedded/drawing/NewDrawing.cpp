#include <embedded/drawing/NewDrawing.h>

#include <embedded/drawing/Entries.h>

#include <string>
#include <utility>

namespace lomlisp::embedded {

namespace {

Group Text(int code, const wchar_t* text) { return {code, std::wstring(text)}; }
Group Integer(int code, long long value) { return {code, value}; }
Group Real(int code, double value) { return {code, value}; }
Group Flat(int code, double x, double y) { return {code, Point{x, y, 0.0, true}}; }
Group Spatial(int code, double x, double y, double z) { return {code, Point{x, y, z, false}}; }
Group Refer(int code, const Object& object) { return {code, Reference{object.handle}}; }

void FillHeader(Drawing& drawing) {
  drawing.SetHeaderVariable(L"$ACADVER", {Text(1, L"AC1032")});
  drawing.SetHeaderVariable(L"$DWGCODEPAGE", {Text(3, L"ANSI_1252")});
  drawing.SetHeaderVariable(L"$INSBASE", {Spatial(10, 0, 0, 0)});
  drawing.SetHeaderVariable(L"$EXTMIN", {Spatial(10, 1e20, 1e20, 1e20)});
  drawing.SetHeaderVariable(L"$EXTMAX", {Spatial(10, -1e20, -1e20, -1e20)});
  drawing.SetHeaderVariable(L"$LIMMIN", {Flat(10, 0, 0)});
  drawing.SetHeaderVariable(L"$LIMMAX", {Flat(10, 420, 297)});
  drawing.SetHeaderVariable(L"$LTSCALE", {Real(40, 1)});
  drawing.SetHeaderVariable(L"$TEXTSIZE", {Real(40, 2.5)});
  drawing.SetHeaderVariable(L"$CLAYER", {Text(8, L"0")});
  drawing.SetHeaderVariable(L"$HANDSEED", {Text(5, L"1")});
  drawing.SetHeaderVariable(L"$INSUNITS", {Integer(70, 4)});
  drawing.SetHeaderVariable(L"$MEASUREMENT", {Integer(70, 1)});
}

Object& AddObject(Drawing& drawing, Groups groups) {
  Object& object = drawing.NewObject(std::move(groups));
  AddHandle(drawing, object);
  return object;
}

Table& AddTable(Drawing& drawing, const wchar_t* name) {
  return drawing.AppendTable(AddObject(
      drawing,
      {Text(0, L"TABLE"), Text(2, name), {330, Reference{}}, Text(100, L"AcDbSymbolTable"), Integer(70, 0)}));
}

void FillTables(Drawing& drawing) {
  for (const wchar_t* name :
       {L"VPORT", L"LTYPE", L"LAYER", L"STYLE", L"VIEW", L"UCS", L"APPID", L"DIMSTYLE", L"BLOCK_RECORD"})
    AddTable(drawing, name);
  Object& dimStyles = *drawing.FindTable(L"DIMSTYLE")->head;
  dimStyles.groups.push_back(Text(100, L"AcDbDimStyleTable"));

  drawing.NewEntry(
      L"VPORT", L"*Active",
      {Integer(70, 0),   Flat(10, 0, 0),   Flat(11, 1, 1),       Flat(12, 210, 148.5), Flat(13, 0, 0),
       Flat(14, 10, 10), Flat(15, 10, 10), Spatial(16, 0, 0, 1), Spatial(17, 0, 0, 0), Real(40, 297),
       Real(41, 1.5),    Real(42, 50),     Real(43, 0),          Real(44, 0),          Real(50, 0),
       Real(51, 0),      Integer(71, 0),   Integer(72, 100),     Integer(73, 1),       Integer(74, 3),
       Integer(75, 0),   Integer(76, 0),   Integer(77, 0),       Integer(78, 0)});
  for (const wchar_t* name : {L"ByBlock", L"ByLayer"})
    drawing.NewEntry(L"LTYPE", name,
                     {Integer(70, 0), Text(3, L""), Integer(72, 65), Integer(73, 0), Real(40, 0)});
  drawing.NewEntry(L"LTYPE", L"Continuous",
                   {Integer(70, 0), Text(3, L"Solid line"), Integer(72, 65), Integer(73, 0), Real(40, 0)});
  drawing.NewEntry(L"LAYER", L"0",
                   {Integer(70, 0), Integer(62, 7), Text(6, L"Continuous"), Integer(370, -3)});
  drawing.NewEntry(L"STYLE", L"Standard",
                   {Integer(70, 0), Real(40, 0), Real(41, 1), Real(50, 0), Integer(71, 0), Real(42, 2.5),
                    Text(3, L"txt"), Text(4, L"")});
  drawing.NewEntry(L"APPID", L"ACAD", {Integer(70, 0)});
  drawing.NewEntry(L"DIMSTYLE", L"Standard", {Integer(70, 0)});
}

Object& AddDictionary(Drawing& drawing, uint64_t owner) {
  Object& dictionary = AddObject(
      drawing,
      {Text(0, L"DICTIONARY"), {330, Reference{owner}}, Text(100, L"AcDbDictionary"), Integer(281, 1)});
  drawing.Objects().push_back(&dictionary);
  return dictionary;
}

void AddToDictionary(Object& dictionary, const wchar_t* key, const Object& object) {
  dictionary.groups.push_back(Text(3, key));
  dictionary.groups.push_back(Refer(350, object));
}

// A space is a block without content of its own, whose block record a layout stands for.
void AddSpace(Drawing& drawing, Object& layouts, const wchar_t* name, const wchar_t* layoutName, int number) {
  const bool isPaper = number > 0;
  Object& record =
      drawing.NewEntry(L"BLOCK_RECORD", name, {Integer(70, 0), Integer(280, 1), Integer(281, 0)});
  Groups begin{Text(0, L"BLOCK"), Refer(330, record), Text(100, L"AcDbEntity")};
  if (isPaper) begin.push_back(Integer(67, 1));
  for (Group& group : Groups{Text(8, L"0"), Text(100, L"AcDbBlockBegin"), Text(2, name), Integer(70, 0),
                             Spatial(10, 0, 0, 0), Text(3, name), Text(1, L"")})
    begin.push_back(std::move(group));
  Groups end{Text(0, L"ENDBLK"), Refer(330, record), Text(100, L"AcDbEntity")};
  if (isPaper) end.push_back(Integer(67, 1));
  end.push_back(Text(8, L"0"));
  end.push_back(Text(100, L"AcDbBlockEnd"));
  Object& beginning = AddObject(drawing, std::move(begin));
  drawing.AppendBlock(beginning, AddObject(drawing, std::move(end)));

  Object& layout = AddObject(drawing, {Text(0, L"LAYOUT"),
                                       Refer(330, layouts),
                                       Text(100, L"AcDbPlotSettings"),
                                       Text(1, L""),
                                       Text(4, L"A3"),
                                       Text(6, L""),
                                       Real(40, 7.5),
                                       Real(41, 20),
                                       Real(42, 7.5),
                                       Real(43, 20),
                                       Real(44, 420),
                                       Real(45, 297),
                                       Real(46, 0),
                                       Real(47, 0),
                                       Real(48, 0),
                                       Real(49, 0),
                                       Real(140, 0),
                                       Real(141, 0),
                                       Real(142, 1),
                                       Real(143, 1),
                                       Integer(70, isPaper ? 688 : 1712),
                                       Integer(72, 0),
                                       Integer(73, 0),
                                       Integer(74, 5),
                                       Text(7, L""),
                                       Integer(75, 16),
                                       Integer(76, 0),
                                       Integer(77, 2),
                                       Integer(78, 300),
                                       Real(147, 1),
                                       Real(148, 0),
                                       Real(149, 0),
                                       Text(100, L"AcDbLayout"),
                                       Text(1, layoutName),
                                       Integer(70, 1),
                                       Integer(71, number),
                                       Flat(10, 0, 0),
                                       Flat(11, 420, 297),
                                       Spatial(12, 0, 0, 0),
                                       Spatial(14, 1e20, 1e20, 1e20),
                                       Spatial(15, -1e20, -1e20, -1e20),
                                       Real(146, 0),
                                       Spatial(13, 0, 0, 0),
                                       Spatial(16, 1, 0, 0),
                                       Spatial(17, 0, 1, 0),
                                       Integer(76, 0),
                                       Refer(330, record)});
  drawing.Objects().push_back(&layout);
  AddToDictionary(layouts, layoutName, layout);
  Groups& groups = record.groups;
  groups.insert(groups.begin() + (Find(groups, kNameCode) - groups.data()) + 1, Refer(340, layout));
}

}  // namespace

void FillNewDrawing(Drawing& drawing) {
  for (const wchar_t* name : {L"HEADER", L"CLASSES", L"TABLES", L"BLOCKS", L"ENTITIES", L"OBJECTS"})
    drawing.Sections().push_back({name, {}});
  FillHeader(drawing);
  FillTables(drawing);
  Object& root = AddDictionary(drawing, 0);
  AddToDictionary(root, L"ACAD_GROUP", AddDictionary(drawing, root.handle));
  Object& layouts = AddDictionary(drawing, root.handle);
  AddToDictionary(root, L"ACAD_LAYOUT", layouts);
  AddSpace(drawing, layouts, L"*Model_Space", L"Model", 0);
  AddSpace(drawing, layouts, L"*Paper_Space", L"Layout1", 1);
}

}  // namespace lomlisp::embedded
