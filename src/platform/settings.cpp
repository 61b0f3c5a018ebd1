#include "platform/settings.h"

#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QVariant>

namespace velmora
{
namespace
{

class QtSettingsStore : public SettingsStore
{
public:
    explicit QtSettingsStore(std::unique_ptr<QSettings> settings) : m_settings(std::move(settings))
    {
        // What an administrator or another program of the same maker stored is none of ours.
        m_settings->setFallbacksEnabled(false);
    }

    [[nodiscard]] std::optional<std::string> stringValue(const std::string& key) const override
    {
        const QVariant value = m_settings->value(QString::fromStdString(key));
        if (value.typeId() != QMetaType::QString)
            return std::nullopt;
        return value.toString().toStdString();
    }

    [[nodiscard]] std::optional<bool> boolValue(const std::string& key) const override
    {
        const QVariant value = m_settings->value(QString::fromStdString(key));
        if (value.typeId() == QMetaType::Bool)
            return value.toBool();
        // Files hold text, and QVariant would take any text but "false" and "0" for true.
        const QString text = value.toString();
        if (text == QLatin1String("true") || text == QLatin1String("1"))
            return true;
        if (text == QLatin1String("false") || text == QLatin1String("0"))
            return false;
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::int64_t> intValue(const std::string& key) const override
    {
        bool ok = false;
        const qlonglong value = m_settings->value(QString::fromStdString(key)).toLongLong(&ok);
        return ok ? std::optional<std::int64_t>(value) : std::nullopt;
    }

    void setString(const std::string& key, const std::string& value) override
    {
        set(key, QString::fromStdString(value));
    }
    void setBool(const std::string& key, bool value) override { set(key, value); }
    void setInt(const std::string& key, std::int64_t value) override
    {
        set(key, QVariant::fromValue<qlonglong>(value));
    }

private:
    void set(const std::string& key, const QVariant& value)
    {
        m_settings->setValue(QString::fromStdString(key), value);
        m_settings->sync();
    }

    std::unique_ptr<QSettings> m_settings;
};

} // namespace

std::unique_ptr<SettingsStore> openUserSettings()
{
    return std::make_unique<QtSettingsStore>(std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Velmora"), QStringLiteral("Velmora")));
}

std::unique_ptr<SettingsStore> openSettingsFile(const std::filesystem::path& file)
{
    return std::make_unique<QtSettingsStore>(
        std::make_unique<QSettings>(QString::fromStdString(file.string()), QSettings::IniFormat));
}

} // namespace velmora
