#include "host/CScheduleEditor.h"

#include <memory>

#include <pugixml.hpp>

#include "foundation/Globals.h"
#include "host/frmSchedule.h"

namespace kolvane {

void CScheduleEditor::ShowDialog() {
  // Without a catalogue handed to the library, the one at TypeDBPath, for this dialog only.
  const auto handed = Globals::SnvtCatalogDocument;
  std::shared_ptr<pugi::xml_document> own;
  if (!handed && !type_db_path_.empty()) {
    own = std::make_shared<pugi::xml_document>();
    if (own->load_file(type_db_path_.c_str())) Globals::SetSnvtCatalogDocument(own);
  }
  struct Restore {
    std::shared_ptr<pugi::xml_document> handed;
    bool replaced;
    ~Restore() {
      if (replaced) Globals::SetSnvtCatalogDocument(handed);
    }
  } restore{handed, own != nullptr};
  auto form = std::make_shared<frmSchedule>(schedule::Schedule::FromExchange(xml_));
  form->Show();
  if (form->Accepted()) xml_ = form->Schedule().ToExchange();
}

}  // namespace kolvane
