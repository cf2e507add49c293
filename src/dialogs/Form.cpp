#include "dialogs/Form.h"

#include <utility>

namespace kolvane {

namespace {

// No user: every form closes at once.
class HeadlessFormHost final : public FormHost {
 public:
  void RunModal(Form& /*form*/) override {}
};

std::shared_ptr<FormHost>& InstalledHost() {
  static std::shared_ptr<FormHost> host = std::make_shared<HeadlessFormHost>();
  return host;
}

}  // namespace

void Form::Show() {
  loaded_ = true;
  // A form loads with empty text boxes, so the text its load sets raises Change again.
  for (const FormControl& control : Controls()) {
    if (auto* const* box = std::get_if<TextBox*>(&control.Control)) (*box)->Text.clear();
  }
  Form_Load();
  // Keep the host alive while it runs, even if it installs another one.
  std::shared_ptr<FormHost> host = InstalledHost();
  if (loaded_) host->RunModal(*this);
  if (loaded_) Unload();
}

void Form::SetText(TextBox& box, std::string text) {
  if (box.Text == text) return;
  box.Text = std::move(text);
  for (const FormControl& control : Controls()) {
    const auto* bound = std::get_if<TextBox*>(&control.Control);
    if (bound != nullptr && *bound == &box && control.Change) control.Change();
  }
}

void Form::Unload() {
  if (!loaded_) return;
  int16_t cancel = 0;
  Form_Unload(cancel);
  if (cancel == 0) loaded_ = false;
}

std::shared_ptr<FormHost> SetFormHost(std::shared_ptr<FormHost> host) {
  if (!host) host = std::make_shared<HeadlessFormHost>();
  return std::exchange(InstalledHost(), std::move(host));
}

}  // namespace kolvane
