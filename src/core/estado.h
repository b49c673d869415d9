#pragma once

#include "core/ambiente.h"
#include "core/literais.h"

#include <QHash>
#include <QString>

#include <memory>

class Perfil;

// A long-lived service whose kind core need not know (the database connection).
struct Servico {
    virtual ~Servico() = default;
};

// All process-wide state. Nothing else in the program is global; a test makes it anew with renovarEstado().
struct Estado {
    QString Lingua;
    QString CaminhoBD;
    bool BDLigada = false;
    qint16 CharsetForms = 0;
    QString VersaoApp;
    qint16 ObjectivoPassWord = 0;
    bool GravarNaBD = false;         // reads of a logger are stored; from the first download on
    bool EliminarConfirmado = false; // the password dialog was answered rightly for a deletion
    QString EnderecoTerminal;        // where the terminal begins
    QString PortaTerminal;

    QString PastaPrograma; // no trailing separator
    QString NomePrograma = u"Vistrel"_s;

    // How many rows a long loop works before events run: 0, by the clock; a test counts them.
    int linhasPorFatia = 0;

    Ambiente ambiente;
    std::unique_ptr<Servico> cnBD;
    std::unique_ptr<Servico> forms;   // the registry of windows; made by platform/forms
    std::unique_ptr<Servico> onewire; // the way to 1-Wire adapters; made by platform/onewire

    struct PerfilLido {
        QByteArray assinatura; // empty: do not reuse
        std::shared_ptr<const Perfil> perfil;
    };
    QHash<QString, PerfilLido> perfis; // parsed settings files, valid while the file's signature stands

    struct FormatosDeData {
        QLocale pedido;
        QLocale usado;
        QString data; // empty: not worked out yet
        QString hora;
    };
    FormatosDeData formatosDeData; // of core/datas, for one locale
};

Estado &estado();
void renovarEstado();
