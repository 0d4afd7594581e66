#include "tests/capture/TestCaptureServices.h"

#include "tests/capture/MemoryUserDefaults.h"

#include <QClipboard>
#include <QGuiApplication>

namespace orlimo {

namespace {

class QtTestPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> /*types*/) override
    {
        QGuiApplication::clipboard()->clear();
    }

    void setString(std::string_view text, PasteboardType /*type*/) override
    {
        QGuiApplication::clipboard()->setText(
            QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    }
};

} // namespace

UserDefaults& captureUserDefaults()
{
    static MemoryUserDefaults defaults;
    return defaults;
}

Pasteboard& capturePasteboard()
{
    static QtTestPasteboard pasteboard;
    return pasteboard;
}

} // namespace orlimo
