// SPDX-License-Identifier: MIT
#include <utility>

#include "host/memory_editor.h"
#include "provider/exported_folder.h"

namespace oru::provider {

host::Memory_Project& Add_To_Editor(host::Memory_Editor& editor, Exported_Project& project) {
  host::Memory_Project& added = editor.Add_Project(project.name, project.host_file);
  for (host::Component_Data& component : project.components)
    added.Add_Component(std::exchange(component, {}));
  project.components.clear();
  return added;
}

}  // namespace oru::provider
