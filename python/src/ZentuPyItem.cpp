#include "ZentuPyItem.h"

#include "ZentuJobJson.h"
#include "ZentuPyJson.h"

namespace py = pybind11;

namespace {

// A property of the item that reads one key of its entry; None where the entry has no such key.
void def_field(py::class_<ZentuPyItem>& item, const char* key, const char* doc) {
    item.def_property_readonly(
        key,
        [key](const ZentuPyItem& self) {
            const ZentuJson entry = self.Entry();
            return entry.contains(key) ? to_python(entry.at(key)) : py::none();
        },
        doc);
}

}  // namespace

ZentuPyItem::ZentuPyItem(ZentuReading reading, const ZentuCmd& command,
                         ZentuCmdItemDefs::CmdItem kind, const ZentuCmdItem& item)
    : reading_(std::move(reading)), command_(&command), kind_(kind), item_(&item) {}

ZentuJson ZentuPyItem::Entry() const {
    return ZentuJobJson::item(*reading_, *command_, kind_, *item_);
}

void bind_item(py::module_& module) {
    py::class_<ZentuPyItem> item(module, "Item",
                                 "One item of a command, as the job was when the command was "
                                 "asked for its items.");
    def_field(item, "name", "The item's name, as the schema spells it.");
    def_field(item, "kind", "The item's kind, such as 'ID_NAME' or 'DV'.");
    def_field(item, "text", "The item's value as text.");
    def_field(item, "readings",
              "Every typed reading of the value, by data type: integer, real, vector3d, enum, "
              "list, integer_list.");
    def_field(item, "reference", "The identifier of the command that the item names, or None.");
    def_field(item, "line",
              "The line where the item is written, or that of what added it; None for an item "
              "of a default command.");
    item.def(
        "to_dict", [](const ZentuPyItem& self) { return to_python(self.Entry()); },
        "The item as Job.to_dict() gives it.");
    item.def("__repr__", [](const ZentuPyItem& self) {
        const ZentuJson entry = self.Entry();
        return py::str("<zentu.Item {} = {!r}>")
            .format(to_python(entry.at("name")), to_python(entry.at("text")));
    });
}
