// The context-menu object: one for each menu that the shell builds.
#pragma once

#include "comserver/counted_object.h"
#include "contextmenu/application_launcher.h"
#include "contextmenu/selection.h"
#include "platform/com.h"

namespace nmshell {

class ShellMenuExtension final : public CountedObject<PlainCounting>,
                                 public IShellExtInit,
                                 public IContextMenu {
  public:
    ShellMenuExtension(Module& module, SelectionKind kind);
    // The last of a Recycle Bin menu's object lets other objects add their entries again.
    ~ShellMenuExtension() override;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return addReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return releaseReference(); }

    // IShellExtInit: takes the selection over. E_FAIL while no languages are loaded, and then nothing
    // changes; S_OK otherwise, whether or not there are any paths.
    HRESULT STDMETHODCALLTYPE Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* data, HKEY progId) override;

    // IContextMenu: adds the entries at `index`. The code of the result is the number of identifiers
    // reserved: kCommandCount, or 0 when nothing was added.
    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT index, UINT idFirst, UINT idLast,
                                               UINT flags) override;
    // Only offsets are accepted as verbs. S_OK for every known one, whether or not the start succeeded; else
    // E_FAIL.
    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override;
    // GCS_VALIDATEW and GCS_HELPTEXTW; `size` counts wide characters, the terminating zero included.
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR id, UINT type, UINT* reserved, CHAR* name,
                                               UINT size) override;

  private:
    HRESULT addEntries(HMENU menu, UINT index, UINT idFirst);
    HRESULT copyHelpText(UINT_PTR id, CHAR* name, UINT size);

    Selection selection_;
    ApplicationLauncher launcher_;
    bool icons_;
    bool recycleBinOwner_ = false;
    bool refused_ = false;  // Initialize failed
};

}  // namespace nmshell
