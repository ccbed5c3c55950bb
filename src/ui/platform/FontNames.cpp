#include "ui/platform/FontNames.h"

#include <QFontDatabase>

namespace vantorel::ui {
namespace {

struct FontNameCache {
    std::function<QStringList()> source = [] { return QFontDatabase::families(); };
    QStringList names;
    bool filled = false;
};

FontNameCache& cache() {
    static FontNameCache instance;
    return instance;
}

}  // namespace

const QStringList& FontNames() {
    FontNameCache& c = cache();
    if (!c.filled) {
        c.names = c.source();
        c.filled = true;
    }
    return c.names;
}

void setFontNameSource(std::function<QStringList()> source) {
    FontNameCache& c = cache();
    c.source = std::move(source);
    c.names.clear();
    c.filled = false;
}

}  // namespace vantorel::ui
