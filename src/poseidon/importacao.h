#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

struct DocumentoSetup;

// Brings the database in step with a unit's setup.xml: its sensors with their limits, inputs, outputs and Spider
// inputs. No row is ever removed here.
namespace importacao {

constexpr int modoDaqui = 2; // of sensors made here; the capture service's have 1

struct Resultado {
    bool importado = false; // the database is in step with the document
    QString motivo;         // why nothing was changed, or which channels were left out; for the row
    std::optional<int> portaTelnet;
    QString data, hora; // of the unit's clock
};

// Fetches the document; an empty text when it could not be had.
using Descarregador = std::function<QString(const QString &ip, const QString &porta)>;

// Adds the unit to the table or brings its row up to date, and follows its setup.xml. The arguments are the texts of
// the cells of its row in the list.
Resultado CarregarPoseidonParaBD(const QString &ip, const QString &tipoN, const QString &udp, const QString &mac,
                                 const QString &nome, const QString &porta, const QString &seleccionado,
                                 const QString &apagar, const QString &nLeituras, const Descarregador &DescarregarXML,
                                 const std::function<void()> &passar = {});

// One transaction: a document that cannot be followed, or a failure of the database, changes nothing. A channel that
// cannot is left out by itself. <passar> is called for every channel; it may throw, which changes nothing either.
Resultado LerSetupXML(const QString &xml, const QString &ip, const QString &endereco, int modo,
                      const std::function<void()> &passar = {});

// The 16 characters by which all tables know a channel. <mac> counts on an address that is not a dotted number.
QString criarSensorID(const QString &id, const QString &endereco, const QString &mac);

} // namespace importacao
