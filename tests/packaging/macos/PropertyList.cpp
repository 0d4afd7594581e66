#include "tests/packaging/macos/PropertyList.h"

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
             "import json, plistlib, sys; print(json.dumps(plistlib.load(open(sys.argv[1], "
             "'rb'))))",
             file.string()}});
    EXPECT_EQ(reading.status, 0) << reading.text();
    all =
        QJsonDocument::fromJson(QByteArray::fromStdString(reading.output)).object().toVariantMap();
}

std::string PropertyList::text(const char* key) const
{
    return all.value(QLatin1String(key)).toString().toStdString();
}

} // namespace orlimo
