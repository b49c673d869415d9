#pragma once

#include <QList>
#include <QString>

#include <optional>

// What a unit tells of itself in setup.xml. Texts as they stand, blanks around them dropped.
struct DocumentoSetup {
    static constexpr qsizetype maximoDeCaracteres = 4 * 1024 * 1024;
    static constexpr qsizetype maximoDeCanais = 1000;

    struct Canal {
        std::optional<QString> ID, Name, Units, Value, Min, Max; // absent: no such element
    };

    QString motivo; // why it is no document, for the user; empty when it was read
    bool lido() const { return motivo.isEmpty(); }

    std::optional<int> TelnetPort;
    bool temTime = false;
    QString Date, Time;
    bool temAgent = false;
    QString Model, MAC, DeviceName; // of the first Agent
    bool temSenSet = false;
    QList<Canal> canais;

    static DocumentoSetup ler(const QString &xml);
};
