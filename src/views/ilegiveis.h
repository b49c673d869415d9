#pragma once

#include <QString>

// What a load could not read: left out, counted, and named once when the load has ended.
class Ilegiveis {
public:
    // `deQuem`: the sensor, or what else the row belongs to. All as stored.
    void juntar(QStringView tabela, const QString &deQuem, const QString &data, const QString &texto);
    bool vazio() const { return m_quantos == 0; }
    // Reports them, if there are any, under the routine's name, and forgets them. May let events run.
    void relatar(const char *fonte);

private:
    qint64 m_quantos = 0;
    struct {
        QString tabela, deQuem, data, texto;
    } m_primeiro;
};
