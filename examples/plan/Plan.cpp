#include <examples/plan/Plan.h>

namespace plan {

namespace {

constexpr LispFunction kFunctions[] = {
    {L"BILL-OF-MATERIALS", BillOfMaterials}, {L"LAYER-TOTALS", LayerTotals}, {L"MOVE-TO-LAYER", MoveToLayer},
    {L"REPLACE-TEXTS", ReplaceTexts},        {L"TAG-ENTITIES", TagEntities}, {L"READ-TAGS", ReadTags},
};

}  // namespace

std::span<const LispFunction> Functions() { return kFunctions; }

}  // namespace plan
