#include "comserver/module.h"

#include "comserver/settings.h"
#include "foundation/path/path.h"
#include "foundation/process/folders.h"
#include "lang/language_file_names.h"
#include "lang/language_loader.h"
#include "lang/loading_scope.h"
#include "platform/module.h"

namespace nmshell {

void Module::attach(platform::ModuleRef instance, const TextLoading& loading) {
    ShellSettings settings;
    const bool loads = loading.evenSwitchedOff || settings.isEnabled();
    bitmaps.setModule(instance);
    file = platform::moduleFileName(instance);
    folder = owlkit::folderOf(file);
    owlkit::recordApplicationFolder(folder);
    if (!loads)
        return;
    // Without its own folder the module must not take files from wherever the process happens to be.
    languageLoaded =
        !folder.empty() &&
        owlkit::LoadLanguageFolder(folder + std::u16string(owlkit::kLanguageFolder), texts).empty();
    applyLanguage(settings.language(), loading.primary);
}

void Module::detach() {
    if (!IsEnabled())
        return;
    bitmaps.clear();
    languageLoaded = false;
}

void Module::applyLanguage(std::u16string_view active, std::u16string_view primary) {
    // Nothing is written then: a menu of another thread may be reading the table.
    if (texts.usesLanguages(active, primary))
        return;
    const owlkit::LoadingScope loading(texts);
    texts.SetLanguages(active, primary);
}

}  // namespace nmshell
