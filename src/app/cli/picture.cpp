// SPDX-License-Identifier: MIT
#include "app/cli/picture.h"

#include <fmt/format.h>
#include <gio/gio.h>

#include <memory>

#include "service/text.h"

namespace oru::app {

namespace {

struct Unref {
  void operator()(GSubprocess* process) const { g_object_unref(process); }
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
  void operator()(GError* error) const { g_error_free(error); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

std::string Text_Of(GBytes* bytes) {
  gsize size = 0;
  const void* data = g_bytes_get_data(bytes, &size);
  return size == 0 ? std::string() : std::string(static_cast<const char*>(data), size);
}

}  // namespace

Picture Draw_Graph(const std::string& dot) {
  GError* failure = nullptr;
  const Owned<GSubprocess> process(g_subprocess_new(
      static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                    G_SUBPROCESS_FLAGS_STDERR_PIPE),
      &failure, "dot", "-Tsvg", nullptr));
  if (!process) {
    const Owned<GError> owned(failure);
    return {
        fmt::format(
            "図を描く「dot」を実行できません ({})。Graphviz (Debian では graphviz パッケージ) をインストールするか、--dot でグラフを書き出してください。",
            owned->message),
        {}};
  }
  const Owned<GBytes> input(g_bytes_new(dot.data(), dot.size()));
  GBytes *out = nullptr, *err = nullptr;
  if (g_subprocess_communicate(process.get(), input.get(), nullptr, &out, &err, &failure) == 0) {
    const Owned<GError> owned(failure);
    return {fmt::format("「dot」と通信できませんでした ({})。", owned->message), {}};
  }
  const Owned<GBytes> drawn(out), told(err);
  if (g_subprocess_get_successful(process.get()) == 0)
    return {fmt::format("「dot」が図を描けませんでした: {}",
                        service::Cut_Bytes(Text_Of(told.get()), 300)),
            {}};
  return {{}, Text_Of(drawn.get())};
}

}  // namespace oru::app
