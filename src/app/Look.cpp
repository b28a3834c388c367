// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Look.h"

#include "app/Strings.h"
#include "base/Failure.h"

#include <QApplication>
#include <QBuffer>
#include <QEvent>
#include <QFile>
#include <QImageReader>
#include <QPixmap>
#include <QPushButton>
#include <QWidget>

namespace vexmarrow {
namespace {

// Sizes of pictures in pixels. Displays refuse large pointers, some by ending the program.
constexpr int kPointerSize = 32;
constexpr int kLargestPicture = 256;
constexpr int kMostPictures = 32;
constexpr qint64 kLargestFile = 4 << 20; // bytes

QByteArray ReadWhole(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileFailure(u"Could not open the file", ToText(path), ToText(file.errorString()));
    }
    if (file.size() > kLargestFile) {
        throw FileFailure(u"Could not read the file", ToText(path), u"It is too large");
    }
    return file.readAll();
}

bool CanPoint(const QImage& picture) {
    return !picture.isNull() && picture.width() <= kLargestPicture &&
           picture.height() <= kLargestPicture;
}

/// The hot spot of the n-th picture of a cursor file, the first being 0: bytes 4 to 7 of its entry
/// in the directory that follows the six bytes of the file's head.
QPoint HotSpot(const QByteArray& bytes, int n) {
    constexpr int kHead = 6;
    constexpr int kEntry = 16;
    constexpr char kCursor = 2;
    const int at = kHead + n * kEntry + 4;
    if (bytes.size() < at + 4 || bytes[2] != kCursor) {
        return {0, 0};
    }
    const auto number = [&](int i) {
        return static_cast<unsigned char>(bytes[i]) +
               256 * static_cast<unsigned char>(bytes[i + 1]);
    };
    return {number(at), number(at + 2)};
}

/// Whether the toolkit has complained about a style sheet while this was alive: it tells nobody
/// else.
class StyleSheetComplaints {
public:
    StyleSheetComplaints() {
        heard = false;
        previous = qInstallMessageHandler(Hear);
    }
    ~StyleSheetComplaints() { qInstallMessageHandler(previous); }
    StyleSheetComplaints(const StyleSheetComplaints&) = delete;
    StyleSheetComplaints& operator=(const StyleSheetComplaints&) = delete;

    static bool Any() { return heard; }

private:
    static void Hear(QtMsgType type, const QMessageLogContext& context, const QString& message) {
        if (message.contains(QStringLiteral("Could not parse"))) {
            heard = true;
        } else if (previous != nullptr) {
            previous(type, context, message);
        }
    }

    // A message handler is a plain function, which can reach nothing else.
    // NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
    static inline bool heard = false;
    static inline QtMessageHandler previous = nullptr;
    // NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)
};

} // namespace

QCursor LoadPointer(const QString& path, qreal devicePixelRatio) {
    QByteArray bytes = ReadWhole(path);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "ico");
    const int wanted = qRound(kPointerSize * devicePixelRatio);
    const auto distance = [&](const QImage& some) { return qAbs(some.width() - wanted); };
    QImage best;
    QPoint hotSpot;
    const int count = qMin(reader.imageCount(), kMostPictures);
    for (int n = 0; n < count; ++n) {
        reader.jumpToImage(n);
        const QImage image = reader.read();
        if (CanPoint(image) && (best.isNull() || distance(image) < distance(best))) {
            best = image;
            hotSpot = HotSpot(bytes, n);
        }
    }
    if (best.isNull()) {
        throw FileFailure(u"Could not read the pointer", ToText(path),
                          u"There is no picture in it that can serve");
    }
    const qreal ratio = qMax(1.0, static_cast<qreal>(best.width()) / kPointerSize);
    const QPoint inside(qMin(hotSpot.x(), best.width() - 1), qMin(hotSpot.y(), best.height() - 1));
    QPixmap picture = QPixmap::fromImage(best);
    picture.setDevicePixelRatio(ratio);
    return QCursor(picture, qRound(inside.x() / ratio), qRound(inside.y() / ratio));
}

void ApplySkin(const QString& path) {
    const QString sheet = QString::fromUtf8(ReadWhole(path));
    const StyleSheetComplaints complaints;
    qApp->setStyleSheet(sheet);
    // The toolkit's parser takes a NUL for the end, and what comes before it for the whole.
    if (StyleSheetComplaints::Any() || sheet.contains(QChar(QChar::Null))) {
        qApp->setStyleSheet({});
        throw FileFailure(u"Could not apply the skin", ToText(path), u"It is no style sheet");
    }
}

void PointerWatch::Watch(QWidget* widget) {
    widget->setMouseTracking(true);
    if (qobject_cast<QPushButton*>(widget) != nullptr) {
        // A button leaves a plain move to its parent, which would be taken for ground.
        widget->setAttribute(Qt::WA_NoMousePropagation);
    }
    widget->installEventFilter(this);
}

bool PointerWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter) {
        if (qobject_cast<QPushButton*>(watched) != nullptr) {
            overButton_();
        } else {
            overGround_();
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vexmarrow
