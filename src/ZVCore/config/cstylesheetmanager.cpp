#include "cstylesheetmanager.h"

#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CLanguageStore>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtCore/QVariant>
#include <QtWidgets/QApplication>

namespace ZVUIFramework {

QString CStyleSheetManager::SeparatorRule()
{
    return QStringLiteral("QLabel#separator_line{background-color: #e1e1e1;}");
}

QString CStyleSheetManager::Assemble(const QMap<QString, bool>& files, const QString& qssDir,
                                     const QString& imageDir)
{
    QString sheet;
    const QString replacement = QStringLiteral("url(%1").arg(imageDir);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString path = qssDir + it.key();
        // Only regular files: a FIFO or a device would block or never end.
        if (!QFileInfo(path).isFile())
            continue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            continue;
        QTextStream stream(&file);
        QString text = stream.readAll();
        if (it.value())
            text.replace(QLatin1String("url(:/"), replacement);
        sheet += text;
        file.close();
    }
    if (!sheet.contains(QLatin1String("separator_line")))
        sheet += SeparatorRule();
    return sheet;
}

void CStyleSheetManager::Apply(const QMap<QString, bool>& files, const QString& imageDir)
{
    const QString qssDir = ZVApplicationInfo::GetInstance()->GetSkinObject().GetQssPath();
    const QString sheet = Assemble(files, qssDir, imageDir);
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance()))
        app->setStyleSheet(sheet);
}

bool CStyleSheetManager::RelativeImagePath()
{
    const QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return true;
    const QVariant value = app->property("QtRelativeImagePath");
    return value.isValid() ? value.toBool() : true;
}

QString CStyleSheetManager::QssSettingPath()
{
    static const QString path = CLanguageStore::GetInstance()->GetAppDir() + QLatin1String("skin")
        + QDir::separator() + QLatin1String("QssSetting.ini");
    return path;
}

QString CStyleSheetManager::QssDirPath()
{
    static const QString path = CLanguageStore::GetInstance()->GetAppDir() + QLatin1String("skin")
        + QDir::separator() + QLatin1String("qss");
    return path;
}

} // namespace ZVUIFramework
