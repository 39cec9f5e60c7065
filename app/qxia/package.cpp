#include "app/qxia/package.h"

#include <libmsi.h>

#include <filesystem>
#include <memory>

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

}  // namespace

bool MsiPackage::isFor64Bit() const {
  return assistant::StartsWithIgnoringCase(platforms, "x64") ||
         assistant::StartsWithIgnoringCase(platforms, "Intel64") ||
         assistant::StartsWithIgnoringCase(platforms, "AMD64");
}

MsiPackage ReadPackage(const std::string& hostPath) {
  const Owned<LibmsiDatabase> database = Open(hostPath);
  MsiPackage package;
  const bool read =
      ForEachRow(database.get(), "SELECT `Property`, `Value` FROM `Property`", [&](const LibmsiRecord* row) {
        package.properties[Taken(libmsi_record_get_string(row, 1))] = Taken(libmsi_record_get_string(row, 2));
      });
  if (!read) throw PackageError(hostPath, "its Property table cannot be read");
  package.productName = Property(package, "ProductName");
  package.productVersion = Property(package, "ProductVersion");
  package.productCode = Property(package, "ProductCode");
  if (package.productCode.empty()) throw PackageError(hostPath, "its Property table tells no ProductCode");
  package.platforms = ReadPlatforms(database.get());
  package.asksForRestart = assistant::StartsWithIgnoringCase(Property(package, "REBOOT"), "F");
  ForEachRow(database.get(), "SELECT `Action` FROM `InstallExecuteSequence`", [&](const LibmsiRecord* row) {
    const std::string action = Taken(libmsi_record_get_string(row, 1));
    if (action == "ScheduleReboot" || action == "ForceReboot") package.asksForRestart = true;
  });
  return package;
}

}  // namespace qxia
