#include "simulator/unidades/documentos.h"

#include "core/literais.h"

#include <QXmlStreamWriter>

namespace simulador {

namespace {

struct Numerado {
    QStringView conjunto;
    int primeiro;
    int quantos;
    bool (Registo::*estado)(int, qint64) const;
};
constexpr Numerado conjuntos[] = {
    {u"BinaryInSet", 1, 3, &Registo::entrada},
    {u"BinaryOutSet", 151, 2, &Registo::saida},
};

void escreverCanais(QXmlStreamWriter &xml, const Definicao &d, const Registo &registo) {
    xml.writeStartElement(u"SenSet"_s);
    for (const Canal &canal : d.canais) {
        xml.writeStartElement(u"Entry"_s);
        xml.writeTextElement(u"ID"_s, canal.id);
        xml.writeTextElement(u"Name"_s, canal.nome);
        xml.writeTextElement(u"Units"_s, canal.unidade);
        xml.writeTextElement(u"Value"_s, registo.valorActual(canal));
        const bool semLimites = d.defeitos.tem(Defeito::XmlCanal) && &canal == &d.canais.first();
        xml.writeTextElement(u"Min"_s, semLimites ? QString() : QString::number(canal.minimo, 'f', 1));
        xml.writeTextElement(u"Max"_s, semLimites ? QString() : QString::number(canal.maximo, 'f', 1));
        xml.writeEndElement();
    }
    xml.writeEndElement();
}

void escreverConjuntos(QXmlStreamWriter &xml, const Registo &registo) {
    for (const Numerado &c : conjuntos) {
        xml.writeStartElement(c.conjunto.toString());
        for (int i = 1; i <= c.quantos; ++i) {
            xml.writeStartElement(u"Entry"_s);
            xml.writeTextElement(u"ID"_s, QString::number(c.primeiro + i - 1));
            xml.writeTextElement(u"Value"_s,
                                 (registo.*c.estado)(i, registo.primeiro() + registo.quantos()) ? u"1"_s : u"0"_s);
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
}

void escreverGeral(QXmlStreamWriter &xml, const Definicao &d, const Registo &registo, const Portas &portas) {
    const QDateTime relogio = registo.relogio();
    const bool iso = d.defeitos.tem(Defeito::DataIso);
    xml.writeStartElement(u"Agent"_s);
    xml.writeTextElement(u"Version"_s, d.firmware);
    xml.writeTextElement(u"Model"_s, QString::number(d.modelo));
    xml.writeTextElement(u"MAC"_s, d.mac);
    xml.writeTextElement(u"DeviceName"_s, d.nome);
    xml.writeEndElement();
    xml.writeStartElement(u"Network"_s);
    xml.writeTextElement(u"IP"_s, d.endereco);
    xml.writeTextElement(u"HttpPort"_s, QString::number(portas.web));
    xml.writeTextElement(u"TelnetPort"_s, QString::number(portas.consola));
    xml.writeEndElement();
    xml.writeStartElement(u"Time"_s);
    xml.writeTextElement(u"Date"_s, relogio.toString(iso ? u"yyyy-MM-dd"_s : u"dd.MM.yyyy"_s));
    xml.writeTextElement(u"Time"_s, relogio.toString(u"HH:mm:ss"_s));
    xml.writeEndElement();
}

// Each entity is ten of the one before it: a careless reader would need gigabytes.
QByteArray comEntidades(const QByteArray &documento) {
    QByteArray tipo = "<!DOCTYPE Root [<!ENTITY e0 \"1234567890\">";
    for (int i = 1; i <= 9; ++i) {
        tipo += "<!ENTITY e" + QByteArray::number(i) + " \"";
        for (int j = 0; j < 10; ++j)
            tipo += "&e" + QByteArray::number(i - 1) + ';';
        tipo += "\">";
    }
    tipo += "]>\n";
    QByteArray novo = documento;
    novo.insert(novo.indexOf("<Root"), tipo);
    return novo.replace("<DeviceName>", "<DeviceName>&e9;");
}

} // namespace

QByteArray setupXml(const Definicao &d, const Registo &registo, const Portas &portas) {
    if (d.defeitos.tem(Defeito::XmlVazio))
        return {};
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    xml.writeStartElement(u"Root"_s);
    if (!d.defeitos.tem(Defeito::XmlSemElementos)) {
        escreverGeral(xml, d, registo, portas);
        escreverCanais(xml, d, registo);
        escreverConjuntos(xml, registo);
    }
    xml.writeEndElement();
    xml.writeEndDocument();

    const auto latino = [](const QByteArray &utf8) { return QString::fromUtf8(utf8).toLatin1(); };
    if (d.defeitos.tem(Defeito::XmlEntidades))
        bytes = comEntidades(bytes);
    if (d.defeitos.tem(Defeito::XmlCodificacao))
        bytes = latino(bytes.replace("<DeviceName>", "<DeviceName>Câmara ")); // still declares UTF-8
    if (d.defeitos.tem(Defeito::XmlLatino))
        bytes = latino(bytes).replace("encoding=\"UTF-8\"", "encoding=\"windows-1252\"");
    if (d.defeitos.tem(Defeito::XmlMetade))
        bytes.truncate(bytes.size() / 2);
    return bytes;
}

QByteArray pagina(const Definicao &d, const Registo &registo) {
    QString linhas;
    for (const Canal &canal : d.canais)
        linhas += u"<tr><td>"_s + canal.id + u"</td><td>"_s + canal.nome.toHtmlEscaped() + u"</td><td class=v>"_s +
                  (canal.ligado ? registo.valorActual(canal) : u"–"_s) + u"</td><td>"_s +
                  (canal.unidade == u"s" ? QString() : canal.unidade) + u"</td></tr>\n"_s;
    const QString html =
        u"<!DOCTYPE html><html lang=pt><meta charset=utf-8><meta name=viewport content='width=device-width'>"
        "<title>%1</title><style>body{font:16px sans-serif;margin:2em auto;max-width:36em;padding:0 1em}"
        "table{border-collapse:collapse;width:100%}td,th{padding:.35em .6em;border-bottom:1px solid #ccc;"
        "text-align:left}.v{text-align:right}</style><h1>%1</h1><p>%2 virtual, %3, firmware %4<br>%5<br>"
        "%6 registos na memória &middot; <a href=/setup.xml>setup.xml</a></p>"
        "<table><tr><th>Canal</th><th>Nome</th><th class=v>Valor</th><th></th></tr>\n%7</table></html>\n"_s;
    return html
        .arg(d.nome.toHtmlEscaped(), nomeDoModelo(d.modelo), d.mac, d.firmware.toHtmlEscaped(),
             registo.relogio().toString(u"dd.MM.yyyy HH:mm:ss"_s), QString::number(registo.quantos()), linhas)
        .toUtf8();
}

} // namespace simulador
