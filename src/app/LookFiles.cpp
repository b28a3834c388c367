// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/LookFiles.h"

#include "app/Strings.h"
#include "base/Failure.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPixmap>
#include <QtEndian>

namespace vexmarrow {
namespace {

// Sizes of pictures in pixels. Displays refuse large pointers, and some even end the program.
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

/// The hot spot of picture `n` (from 0) of a cursor file; the origin if the file is an icon. It is
/// stored in bytes 4 to 7 of the picture's entry in the directory that follows the file's header.
QPoint HotSpot(const QByteArray& bytes, int n) {
    constexpr int kHead = 6;
    constexpr int kEntry = 16;
    constexpr char kCursor = 2;
    const int at = kHead + n * kEntry + 4;
    if (bytes.size() < at + 4 || bytes[2] != kCursor) {
        return {0, 0};
    }
    return {qFromLittleEndian<quint16>(bytes.data() + at),
            qFromLittleEndian<quint16>(bytes.data() + at + 2)};
}

// A message handler is a plain function, so it can use only global variables.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
bool hasComplained = false;
QtMessageHandler previousHandler = nullptr;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

/// Catches the warning about a bad style sheet. The toolkit reports this error in no other way.
void HearComplaint(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.contains(QStringLiteral("Could not parse"))) {
        hasComplained = true;
    } else if (previousHandler != nullptr) {
        previousHandler(type, context, message);
    }
}

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
                          u"It contains no picture that can be used as a pointer");
    }
    const qreal ratio = qMax(1.0, static_cast<qreal>(best.width()) / kPointerSize);
    const QPoint inside(qMin(hotSpot.x(), best.width() - 1), qMin(hotSpot.y(), best.height() - 1));
    QPixmap picture = QPixmap::fromImage(best);
    picture.setDevicePixelRatio(ratio);
    return QCursor(picture, qRound(inside.x() / ratio), qRound(inside.y() / ratio));
}

void ApplySkin(const QString& path) {
    const QString sheet = QString::fromUtf8(ReadWhole(path));
    hasComplained = false;
    previousHandler = qInstallMessageHandler(HearComplaint);
    qApp->setStyleSheet(sheet);
    qInstallMessageHandler(previousHandler);
    // The toolkit's parser stops at a NUL without a warning.
    if (hasComplained || sheet.contains(QChar(QChar::Null))) {
        qApp->setStyleSheet({});
        throw FileFailure(u"Could not apply the skin", ToText(path),
                          u"It is not a valid style sheet");
    }
}

} // namespace vexmarrow
