#include "demo/catalogo.h"

#include "core/literais.h"
#include "demo/acaso.h"
#include "demo/unidadesVirtuais.h"

#include <array>
#include <cmath>
#include <map>

namespace demonstracao {

namespace {

constexpr Unidade asUnidades[] = {
    {u"127.0.0.2", u"Poseidon Frio", 4, 314, u"02:00:7F:00:00:02", '2'},
    {u"127.0.0.3", u"Poseidon Laboratório", 4, 314, u"02:00:7F:00:00:03", '2'},
    {u"127.0.0.4", u"Poseidon Cozinhas", 34, 208, u"02:00:7F:00:00:04", '1'},
    {u"127.0.0.5", u"Poseidon Técnico", 10, 192, u"02:00:7F:00:00:05", '1'},
    {u"127.0.0.6", u"Poseidon Logística", 34, 208, u"02:00:7F:00:00:06", '2'},
    {u"127.0.0.7", u"Poseidon Reserva", 4, 314, u"02:00:7F:00:00:07", '2'},
};

constexpr int unidadeDoBarramento = 3;

constexpr EntradaSpider asEntradasSpider[] = {
    {u"127.0.0.2", 301, u"Detector Fumo"},
    {u"127.0.0.2", 302, u"Degelo Congelados"},
};

constexpr Grupo osGrupos[] = {
    {1, u"Cadeia de Frio", 0}, {2, u"Laboratórios", 1}, {3, u"Restauração", 2}, {4, u"Zonas Técnicas", 3},
    {5, u"Logística", 4},      {6, u"Farmácia", 0},     {7, u"Processo", 3},    {8, u"Exteriores", 4},
};

constexpr Escala asEscalas[] = {
    {1, u"Nível 0-100 %", 100, 0},
    {2, u"CO2 400-2000 ppm", 2000, 400},
    {3, u"Vento 0-60 km/h", 60, 0},
    {4, u"Radiação 0-1400 W/m2", 1400, 0},
    {5, u"pH 6-9", 9, 6},
    {6, u"Abertura 0-100 %", 100, 0},
    {7, u"Caudal 0-60 m3/h", 60, 0},
    {8, u"Pressão 0-10 bar", 10, 0},
    {9, u"Vácuo -1 a 0 bar", 0, -1},
    {10, u"Depósito 0-5000 L", 5000, 0},
    {11, u"Potência 0-250 kW", 250, 0},
    {12, u"Turbidez 0-40 NTU", 40, 0},
};

struct Linha {
    QStringView nome;
    Local local;
    int lugar; // the same place for a temperature, a humidity and a dew point
    int grupo;
    int escala = 0;
};

using enum Local;
constexpr Linha linhasC[] = {{u"Câmara Frio 1", Refrigerado, 1, 1},
                             {u"Câmara Frio 2", Refrigerado, 2, 1},
                             {u"Frigorífico Vacinas", Vacinas, 3, 6},
                             {u"Câmara Congelados 1", Congelado, 4, 1},
                             {u"Armazém Norte", Armazem, 5, 5},
                             {u"Laboratório 1", Laboratorio, 6, 2},
                             {u"Câmara Congelados 2", Congelado, 7, 1},
                             {u"Farmácia Frio", Vacinas, 8, 6},
                             {u"Armazém Sul", Armazem, 9, 5},
                             {u"Cais de Carga", Armazem, 10, 5},
                             {u"Laboratório 2", Laboratorio, 11, 2},
                             {u"Túnel Congelação", Congelado, 12, 1},
                             {u"Sala de Preparação", Laboratorio, 13, 3}};
constexpr Linha linhasT[] = {{u"Estufa Bacteriologia", Estufa, 20, 2},  {u"Ultracongelador -80", Ultrafrio, 21, 2},
                             {u"Banco de Sangue", Vacinas, 22, 2},      {u"Reagentes Frio", Vacinas, 23, 2},
                             {u"Arquivo Amostras", Congelado, 24, 2},   {u"Microscopia", Laboratorio, 25, 2},
                             {u"Estufa Micologia", Estufa, 26, 2},      {u"Banho-Maria", Estufa, 27, 2},
                             {u"Plaquetas", Laboratorio, 28, 2},        {u"Histologia", Laboratorio, 29, 2},
                             {u"Câmara Autópsias", Refrigerado, 30, 2}, {u"Biotério", Laboratorio, 31, 2}};
constexpr Linha linhas0[] = {{u"Montra Talho", Refrigerado, 40, 3},
                             {u"Montra Peixaria", Refrigerado, 41, 3},
                             {u"Cozinha Quente", Quente, 42, 3},
                             {u"Gelados Arca 1", Congelado, 43, 3},
                             {u"Garrafeira", Armazem, 44, 3},
                             {u"Frutas e Legumes", Refrigerado, 45, 3},
                             {u"Gelados Arca 2", Congelado, 46, 3},
                             {u"Charcutaria", Refrigerado, 47, 3},
                             {u"Vitrina Pastelaria", Vacinas, 48, 3},
                             {u"Fermentação Padaria", Estufa, 49, 3},
                             {u"Self-Service Frio", Refrigerado, 50, 3},
                             {u"Banho Quente Linha", Quente, 51, 3}};
constexpr Linha linhas5[] = {{u"Servidores Rack A", Servidores, 60, 4},
                             {u"Servidores Rack B", Servidores, 61, 4},
                             {u"Sala UPS", Tecnica, 62, 4},
                             {u"Posto Transformação", Tecnica, 63, 4},
                             {u"Central Telefónica", Servidores, 64, 4},
                             {u"Casa das Máquinas", Tecnica, 65, 4},
                             {u"Bastidor Piso 1", Servidores, 66, 4},
                             {u"Bastidor Piso 2", Servidores, 67, 4},
                             {u"Quadro Eléctrico", Tecnica, 68, 4},
                             {u"Ida Chiller", Refrigerado, 69, 4},
                             {u"Retorno Chiller", Refrigerado, 70, 4},
                             {u"Torre Arrefecimento", Exterior, 71, 4}};
constexpr Linha linhasE[] = {{u"Exterior Norte", Exterior, 80, 8},    {u"Viatura Frio 01", Viatura, 81, 5},
                             {u"Viatura Frio 02", Viatura, 82, 5},    {u"Águas Quentes", Quente, 83, 4},
                             {u"Estufa Plantas", Laboratorio, 84, 8}, {u"Contentor 1", Viatura, 85, 5},
                             {u"Exterior Sul", Exterior, 86, 8},      {u"Cobertura", Exterior, 87, 8},
                             {u"Viatura Frio 03", Viatura, 88, 5},    {u"Contentor 2", Viatura, 89, 5},
                             {u"Retorno AQS", Quente, 90, 4},         {u"Viatura Frio 04", Viatura, 91, 5}};
constexpr Linha linhasHR[] = {{u"HR Câmara Frio 1", Refrigerado, 1, 1},    {u"HR Armazém Norte", Armazem, 5, 5},
                              {u"HR Laboratório 1", Laboratorio, 6, 2},    {u"HR Farmácia", Vacinas, 8, 6},
                              {u"HR Exterior Norte", Exterior, 80, 8},     {u"HR Garrafeira", Armazem, 44, 3},
                              {u"HR Câmara Frio 2", Refrigerado, 2, 1},    {u"HR Armazém Sul", Armazem, 9, 5},
                              {u"HR Laboratório 2", Laboratorio, 11, 2},   {u"HR Servidores A", Servidores, 60, 4},
                              {u"HR Sala Preparação", Laboratorio, 13, 3}, {u"HR Cais de Carga", Armazem, 10, 5},
                              {u"HR Histologia", Laboratorio, 29, 2}};
constexpr Linha linhasK[] = {
    {u"Pressão Sala Limpa", Laboratorio, 100, 2},   {u"Pressão Isolamento 1", Laboratorio, 101, 2},
    {u"Pressão Bloco 1", Laboratorio, 102, 2},      {u"Pressão Farmácia", Laboratorio, 103, 6},
    {u"Barómetro Cobertura", Exterior, 104, 8},     {u"Pressão Corredor", Laboratorio, 105, 2},
    {u"Pressão Isolamento 2", Laboratorio, 106, 2}, {u"Pressão Bloco 2", Laboratorio, 107, 2},
    {u"Pressão Antecâmara", Laboratorio, 108, 6},   {u"Pressão Biotério", Laboratorio, 109, 2},
    {u"Pressão Armazém", Armazem, 110, 5},          {u"Pressão Exterior", Exterior, 111, 8}};
constexpr Linha linhasD[] = {{u"PO Câmara Frio 1", Refrigerado, 1, 1},    {u"PO Armazém Norte", Armazem, 5, 5},
                             {u"PO Laboratório 1", Laboratorio, 6, 2},    {u"PO Farmácia", Vacinas, 8, 6},
                             {u"PO Exterior Norte", Exterior, 80, 8},     {u"PO Garrafeira", Armazem, 44, 3},
                             {u"PO Câmara Frio 2", Refrigerado, 2, 1},    {u"PO Armazém Sul", Armazem, 9, 5},
                             {u"PO Laboratório 2", Laboratorio, 11, 2},   {u"PO Servidores A", Servidores, 60, 4},
                             {u"PO Sala Preparação", Laboratorio, 13, 3}, {u"PO Cais de Carga", Armazem, 10, 5}};
constexpr Linha linhasV[] = {{u"Nível Depósito 1", Nivel, 120, 7, 1},   {u"CO2 Sala de Espera", Processo, 121, 4, 2},
                             {u"Radiação Solar", Solar, 122, 8, 4},     {u"Vento Cobertura", Processo, 123, 8, 3},
                             {u"Sonda Redox", Processo, 124, 4, 0},     {u"pH Piscina", Processo, 125, 7, 5},
                             {u"Nível Depósito 2", Nivel, 126, 7, 1},   {u"CO2 Auditório", Processo, 127, 4, 2},
                             {u"Válvula Retorno", Processo, 128, 4, 6}, {u"Registo de Ar", Processo, 129, 4, 6},
                             {u"Humidade Solo", Nivel, 130, 8, 1},      {u"Entrada Livre", Processo, 131, 4, 0}};
constexpr Linha linhasA[] = {{u"Caudal Água Fria", Processo, 140, 7, 7},   {u"Pressão Rede Água", Processo, 141, 7, 8},
                             {u"Nível Gasóleo", Nivel, 142, 7, 10},        {u"Pressão Vácuo", Processo, 143, 2, 9},
                             {u"Potência Chiller", Processo, 144, 4, 11},  {u"Malha Livre", Processo, 145, 7, 0},
                             {u"Caudal Água Quente", Processo, 146, 7, 7}, {u"Pressão Azoto", Processo, 147, 2, 8},
                             {u"Pressão Oxigénio", Processo, 148, 2, 8},   {u"Azoto Líquido", Nivel, 149, 2, 10},
                             {u"Pressão Vapor", Processo, 150, 7, 8},      {u"Turbidez Água", Processo, 151, 7, 12}};

struct Familia {
    char letra;
    int principais;
    QStringView tipo;
    int primeiroID; // of the unit's channels; 0: a 1-Wire device of the capture service
    std::span<const Linha> linhas;
    QStringView unidade{}; // as a network unit calls it; empty: the virtual ones have no such channel
    double SensUIMax = 20, SensUIMin = 4;
};
constexpr Familia familias[] = {
    {'C', 6, u"P 1250C", 101, linhasC, u"C"},
    {'T', 1, u"1WIRE T", 0, linhasT},
    {'%', 6, u"P 1250%", 131, linhasHR, u"%RH"},
    {'K', 4, u"P 1250K", 161, linhasK, u"kPa"},
    {'D', 4, u"P 1250D", 191, linhasD, u"Td"},
    {'V', 4, u"P 1250V", 202, linhasV, u"V", 15, 0},
    {'A', 4, u"P 1250A", 231, linhasA, u"mA", 25, 0},
    {'0', 1, u"P 1250", 501, linhas0},
    {'5', 1, u"P RS485", 28201, linhas5},
    {'E', 1, u"P 1WIRE", 0, linhasE},
};

bool deUnidadeVirtual(const Sensor &s) {
    return unidadeVirtual(QStringView(s.PoseidonIP).mid(1));
}

// The limits a person would set for what the sensor measures. A unit that is asked for its configuration gives both.
void escolherLimites(Sensor &s, int &semUnidade) {
    constexpr std::array ciclo = {Limite::Ambos,    Limite::Ambos,  Limite::SoMaximo,
                                  Limite::SoMinimo, Limite::Nenhum, Limite::Nulo};
    const bool daUnidade = deUnidadeVirtual(s) && s.mede->importada;
    s.limite = daUnidade ? Limite::Ambos : ciclo[size_t(semUnidade++) % ciclo.size()];
    const auto [maximo, minimo] = s.mede->limites(perfilDe(s.local));
    const auto naEscala = [&s](double parte) {
        const double de = s.escala ? s.escala->minimo : s.SensUIMin;
        const double ate = s.escala ? s.escala->maximo : s.SensUIMax;
        return std::round((de + parte * (ate - de)) * 10) / 10;
    };
    s.maximo = s.mede->comEscala ? naEscala(maximo) : maximo;
    s.minimo = s.mede->comEscala ? naEscala(minimo) : minimo;
}

void identificar(Sensor &s, const Familia &f, const Unidade &u, int ordemNaUnidade, quint64 semente) {
    const bool noBarramento = f.primeiroID == 0;
    s.Fonte = f.letra == 'T' ? u"1WIRE"_s : u"POSEIDON"_s;
    s.PoseidonIP = QChar(noBarramento ? '1' : u.modo) + u.endereco.toString();
    if (noBarramento) {
        s.ID = u" "_s;
        s.SensorID = rom1Wire(0x28, misturar(semente, s.lugar) & 0xFFFFFFFFFFFF, true);
        return;
    }
    s.ID = QString::number(f.primeiroID + ordemNaUnidade);
    const QString ultimo = u.endereco.mid(u.endereco.lastIndexOf(u'.') + 1).toString();
    s.SensorID = ultimo.rightJustified(3, u'0') + s.ID.rightJustified(13, u'0');
}

} // namespace

std::span<const Unidade> unidades() {
    return asUnidades;
}
std::span<const EntradaSpider> entradasSpider() {
    return asEntradasSpider;
}
std::span<const Grupo> grupos() {
    return osGrupos;
}
std::span<const Escala> escalas() {
    return asEscalas;
}

QString rom1Wire(quint8 familia, quint64 serie, bool familiaPrimeiro) {
    QByteArray rom(1, char(familia));
    for (int i = 0; i < 6; ++i)
        rom.append(char(serie >> (8 * i)));
    quint8 crc = 0;
    for (const char c : std::as_const(rom)) {
        crc ^= quint8(c);
        for (int i = 0; i < 8; ++i)
            crc = quint8(crc & 1 ? (crc >> 1) ^ 0x8C : crc >> 1);
    }
    rom.append(char(crc));
    if (!familiaPrimeiro)
        std::reverse(rom.begin(), rom.end());
    return QString::fromLatin1(rom.toHex().toUpper());
}

std::vector<Sensor> sensores(quint64 semente) {
    std::vector<Sensor> todos;
    std::map<std::pair<char, int>, int> naUnidade;
    for (const Familia &f : familias) {
        int ordem = 0, semUnidade = 0;
        for (const Linha &l : f.linhas) {
            Sensor s;
            s.letra = f.letra;
            s.mede = medidaDe(QLatin1Char(f.letra));
            s.unidade = f.unidade;
            s.ordem = ordem++;
            s.principal = s.ordem < f.principais;
            s.Tipo = f.tipo.toString();
            s.Descricao = l.nome.toString();
            s.local = l.local;
            s.lugar = l.lugar;
            s.grupo = l.grupo;
            s.activo = s.ordem != 8 && s.ordem != 10;
            s.recente = s.ordem == 9;
            s.semLeituras = f.letra == 'E' && s.ordem == 11;
            s.escala = l.escala > 0 ? &asEscalas[l.escala - 1] : nullptr;
            s.SensUIMax = f.SensUIMax;
            s.SensUIMin = f.SensUIMin;
            int unidade = osGrupos[l.grupo - 1].unidade;
            if (f.primeiroID == 0 && unidadeVirtual(asUnidades[unidade].endereco))
                unidade = unidadeDoBarramento; // no log of a unit can hold them
            identificar(s, f, asUnidades[unidade], naUnidade[{f.letra, unidade}]++, semente);
            escolherLimites(s, semUnidade);
            todos.push_back(std::move(s));
        }
    }
    for (const size_t i : {size_t(1), size_t(6)}) // renamed once: their old readings keep the old name
        todos[i].antigo = todos[i].Descricao + u" ant."_s;
    return todos;
}

} // namespace demonstracao
