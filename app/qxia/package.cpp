#include "app/qxia/package.h"

#include <libmsi.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/text.h"

namespace qxia {
namespace {

struct Unreference {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unreference>;

/// The library's report of a failure, released with this.
class Failure {
 public:
  Failure() = default;
  ~Failure() { g_clear_error(&error_); }
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;

  GError** place() {
    g_clear_error(&error_);
    return &error_;
  }
  bool isThere() const { return error_ != nullptr; }

 private:
  GError* error_ = nullptr;
};

std::string Taken(gchar* text) {
  const std::string copy = text == nullptr ? "" : text;
  g_free(text);
  return copy;
}

/// The library tells every failure on the error output as well; whoever called is told by the exception.
void Silence() {
  g_log_set_default_handler([](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
}

Owned<LibmsiDatabase> Open(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) throw PackageError(path, "it is not there, or no file");
  Silence();
  Failure failure;
  Owned<LibmsiDatabase> database(libmsi_database_new(path.c_str(), LIBMSI_DB_FLAGS_READONLY, nullptr, failure.place()));
  if (!database) throw PackageError(path, "it is no Windows Installer package that can be read");
  return database;
}

/// Calls `use` with each row of a query; false when the package has no such table or it cannot be read to its end.
template <typename Use>
bool ForEachRow(LibmsiDatabase* database, const char* query, Use use) {
  Failure failure;
  const Owned<LibmsiQuery> rows(libmsi_query_new(database, query, failure.place()));
  if (!rows || !libmsi_query_execute(rows.get(), nullptr, failure.place())) return false;
  while (const Owned<LibmsiRecord> row{libmsi_query_fetch(rows.get(), failure.place())}) use(row.get());
  return !failure.isThere();
}

/// The part of the summary's template before the semicolon: the platforms.
std::string ReadPlatforms(LibmsiDatabase* database) {
  Failure failure;
  const Owned<LibmsiSummaryInfo> summary(libmsi_summary_info_new(database, 0, failure.place()));
  if (!summary) return "";
  const gchar* text = libmsi_summary_info_get_string(summary.get(), LIBMSI_PROPERTY_TEMPLATE, failure.place());
  const std::string all = text == nullptr ? "" : text;
  return all.substr(0, all.find(';'));
}

std::string Property(const MsiPackage& package, const char* name) {
  const auto found = package.properties.find(name);
  return found == package.properties.end() ? "" : found->second;
}

MsiPackage ReadHere(const std::string& hostPath) {
  const Owned<LibmsiDatabase> database = Open(hostPath);
  MsiPackage package;
  const bool read =
      ForEachRow(database.get(), "SELECT `Property`, `Value` FROM `Property`", [&](const LibmsiRecord* row) {
        package.properties[Taken(libmsi_record_get_string(row, 1))] = Taken(libmsi_record_get_string(row, 2));
      });
  if (!read) throw PackageError(hostPath, "its Property table cannot be read");
  if (Property(package, "ProductCode").empty()) throw PackageError(hostPath, "its Property table tells no ProductCode");
  package.platforms = ReadPlatforms(database.get());
  package.asksForRestart = assistant::StartsWithIgnoringCase(Property(package, "REBOOT"), "F");
  ForEachRow(database.get(), "SELECT `Action` FROM `InstallExecuteSequence`", [&](const LibmsiRecord* row) {
    const std::string action = Taken(libmsi_record_get_string(row, 1));
    if (action == "ScheduleReboot" || action == "ForceReboot") package.asksForRestart = true;
  });
  return package;
}

// The library does not survive every damaged package: what dies in the place of this process is another one, which
// hands the package over as JSON.

using Json = nlohmann::json;

std::string Packed(const std::string& hostPath) {
  try {
    const MsiPackage package = ReadHere(hostPath);
    Json members = {{"properties", package.properties}, {"platforms", package.platforms}};
    members["restart"] = package.asksForRestart;
    return members.dump(-1, ' ', true, Json::error_handler_t::replace);
  } catch (const PackageError& broken) {
    return Json({{"defect", broken.reason()}}).dump(-1, ' ', true, Json::error_handler_t::replace);
  }
}

[[noreturn]] void ReadInChild(const std::string& hostPath, int pipe) {
  constexpr unsigned mostSeconds = 60;
  const rlimit none{0, 0};
  const rlimit work{2, 2};  // seconds of the processor, in which two hundred packages can be read
  setrlimit(RLIMIT_CORE, &none);
  setrlimit(RLIMIT_CPU, &work);
  close(STDERR_FILENO);
  alarm(mostSeconds);
  const std::string packed = Packed(hostPath);
  std::size_t done = 0;
  for (ssize_t count = 1; count > 0 && done < packed.size(); done += static_cast<std::size_t>(count)) {
    count = write(pipe, packed.data() + done, packed.size() - done);
    if (count < 0) break;
  }
  _exit(done == packed.size() ? 0 : 1);
}

std::string ReadAll(int pipe) {
  std::string bytes;
  char buffer[1 << 12];
  for (ssize_t count = 0; (count = read(pipe, buffer, sizeof buffer)) > 0;)
    bytes.append(buffer, static_cast<std::size_t>(count));
  return bytes;
}

/// What the other process made of the package; "" when it did not live to tell.
std::string ReadElsewhere(const std::string& hostPath) {
  int ends[2];
  if (pipe(ends) != 0) return "";
  const pid_t child = fork();
  if (child == 0) ReadInChild(hostPath, ends[1]);
  close(ends[1]);
  const std::string packed = child < 0 ? "" : ReadAll(ends[0]);
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return packed;
}

}  // namespace

bool MsiPackage::isFor64Bit() const {
  return assistant::StartsWithIgnoringCase(platforms, "x64") ||
         assistant::StartsWithIgnoringCase(platforms, "Intel64") ||
         assistant::StartsWithIgnoringCase(platforms, "AMD64");
}

MsiPackage ReadPackage(const std::string& hostPath) {
  const Json members = Json::parse(ReadElsewhere(hostPath), nullptr, false);
  if (members.is_discarded()) throw PackageError(hostPath, "it is damaged");
  if (members.contains("defect")) throw PackageError(hostPath, members["defect"].get<std::string>());
  MsiPackage package;
  package.properties = members["properties"].get<std::map<std::string, std::string>>();
  package.platforms = members["platforms"].get<std::string>();
  package.asksForRestart = members["restart"].get<bool>();
  package.productName = Property(package, "ProductName");
  package.productVersion = Property(package, "ProductVersion");
  package.productCode = Property(package, "ProductCode");
  return package;
}

}  // namespace qxia
