#include "tests/packaging/PropertyList.h"

#include "tests/packaging/CommandResult.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace orlimo {

PropertyList::PropertyList(const std::filesystem::path& file)
{
    const auto reading = CommandResult::of(
        "/usr/bin/env",
        {.arguments = {
             "python3",
             "-c",
             "import json, plistlib, sys\n"
             "print(json.dumps(plistlib.load(open(sys.argv[1], 'rb'))))",
             file.string()}});
    EXPECT_EQ(reading.status, 0) << reading.text();
    values =
        QJsonDocument::fromJson(QByteArray::fromStdString(reading.output)).object().toVariantMap();
}

} // namespace orlimo
