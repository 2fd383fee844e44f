#include "czv_base_file_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QDir>

#include <windows.h>

namespace ZVFoundationPrivate {

QString platformFileVersion(const QString& path)
{
    const QString nativePath = QDir::toNativeSeparators(path);
    const auto* file = reinterpret_cast<const wchar_t*>(nativePath.utf16());

    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(file, &ignored);
    if (size == 0)
        return QString();
    QByteArray block(int(size), '\0');
    if (!::GetFileVersionInfoW(file, 0, size, block.data()))
        return QString();

    void* value = nullptr;
    UINT valueSize = 0;
    if (!::VerQueryValueW(block.constData(), L"\\", &value, &valueSize) || !value
        || valueSize < sizeof(VS_FIXEDFILEINFO))
        return QString();
    const auto* info = static_cast<const VS_FIXEDFILEINFO*>(value);
    // A resource without this signature is not a fixed file information block.
    if (info->dwSignature != 0xFEEF04BD)
        return QString();

    return QString::number(HIWORD(info->dwFileVersionMS)) + QLatin1Char('.')
        + QString::number(LOWORD(info->dwFileVersionMS)) + QLatin1Char('.')
        + QString::number(HIWORD(info->dwFileVersionLS)) + QLatin1Char('.')
        + QString::number(LOWORD(info->dwFileVersionLS));
}

} // namespace ZVFoundationPrivate
