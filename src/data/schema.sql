-- Vistrel and Kelvark: the shared database, schema version 1.
-- Dates are wall-clock text 'YYYY-MM-DD HH:MM:SS'. Value columns are NUMERIC: a number is stored as a number, a text
-- such as 'ND' or '21,5' stays text. Text compares without case, as the installations are used to.
PRAGMA journal_mode = WAL;
PRAGMA user_version = 1;

BEGIN;

-- Sensors and groups ------------------------------------------------------------------------------------------
CREATE TABLE Sensores (
  SensorID TEXT COLLATE NOCASE PRIMARY KEY, ID TEXT COLLATE NOCASE, Nlinha INTEGER, Tipo TEXT COLLATE NOCASE,
  Descricao TEXT COLLATE NOCASE, Seleccionado TEXT COLLATE NOCASE, Grupo INTEGER, Fonte TEXT COLLATE NOCASE,
  PoseidonIP TEXT COLLATE NOCASE, UltTemp NUMERIC, SensUIMax NUMERIC, SensUIMin NUMERIC);
CREATE TABLE Grupos (codGrupo INTEGER PRIMARY KEY, Descricao TEXT COLLATE NOCASE);
CREATE TABLE CMDGrupos (Descricao TEXT COLLATE NOCASE);
CREATE TABLE Calibracoes (
  SondaID TEXT COLLATE NOCASE, Maximo NUMERIC, Minimo NUMERIC, MaximoHum NUMERIC, MinimoHum NUMERIC,
  TipoSensor TEXT COLLATE NOCASE, VDD TEXT, VAD TEXT, Calibracao TEXT);
CREATE INDEX ixCalibracoes ON Calibracoes (SondaID);
CREATE TABLE VisoresSensores (SensorID TEXT COLLATE NOCASE);
CREATE TABLE SensoresInputs (SensorID TEXT COLLATE NOCASE);
CREATE TABLE SensoresLeiturasOutput (SensorID TEXT COLLATE NOCASE);

-- Readings ----------------------------------------------------------------------------------------------------
-- The index of each carries all that a chart reads, so that a range of one sensor is one run through the index.
CREATE TABLE Temperaturas (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Temperatura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixTemperaturas ON Temperaturas (Sensor, Data, Temperatura, Observacoes, flag);
CREATE TABLE TemperaturasPull (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Temperatura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixTemperaturasPull ON TemperaturasPull (Sensor, Data, Temperatura, Observacoes, flag);
CREATE TABLE Medias (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Temperatura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixMedias ON Medias (Sensor, Data, Temperatura, Observacoes, flag);
CREATE TABLE Humidade (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Percentagem NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE, MediaSync TEXT COLLATE NOCASE);
CREATE INDEX ixHumidade ON Humidade (Sensor, Data, Percentagem, Observacoes, flag);
CREATE TABLE HumidadePull (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Percentagem NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE, MediaSync TEXT COLLATE NOCASE);
CREATE INDEX ixHumidadePull ON HumidadePull (Sensor, Data, Percentagem, Observacoes, flag);
CREATE TABLE Pressao (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixPressao ON Pressao (Sensor, Data, Leitura, Observacoes, flag);
CREATE TABLE PressaoPull (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixPressaoPull ON PressaoPull (Sensor, Data, Leitura, Observacoes, flag);
CREATE TABLE Pontoorvalho (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixPontoorvalho ON Pontoorvalho (Sensor, Data, Leitura, Observacoes, flag);
CREATE TABLE PontoorvalhoPull (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixPontoorvalhoPull ON PontoorvalhoPull (Sensor, Data, Leitura, Observacoes, flag);
CREATE TABLE SensUI_Leituras (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  Escala TEXT, Ident TEXT, flag TEXT COLLATE NOCASE);
CREATE INDEX ixSensUI_Leituras ON SensUI_Leituras (Sensor, Data, Leitura, Observacoes, flag);
CREATE TABLE SensUI_LeiturasPull (
  Data TEXT, Sensor TEXT COLLATE NOCASE, NomeSensor TEXT COLLATE NOCASE, Leitura NUMERIC, Observacoes TEXT,
  Escala TEXT, Ident TEXT, flag TEXT COLLATE NOCASE);
CREATE INDEX ixSensUI_LeiturasPull ON SensUI_LeiturasPull (Sensor, Data, Leitura, Observacoes, flag);

-- Alarms; the columns after SondaID and Data are read by position -------------------------------------------------
CREATE TABLE Alarmes (
  SondaID TEXT COLLATE NOCASE, Nome TEXT COLLATE NOCASE, Data TEXT, Maximo NUMERIC, Minimo NUMERIC, Valor NUMERIC);
CREATE INDEX ixAlarmes ON Alarmes (SondaID, Data);
CREATE TABLE AlarmesHum (
  SondaID TEXT COLLATE NOCASE, Nome TEXT COLLATE NOCASE, Data TEXT, Maximo NUMERIC, Minimo NUMERIC, Valor NUMERIC);
CREATE INDEX ixAlarmesHum ON AlarmesHum (SondaID, Data);
CREATE TABLE AlarmesPressao (
  SondaID TEXT COLLATE NOCASE, Nome TEXT COLLATE NOCASE, Data TEXT, Maximo NUMERIC, Minimo NUMERIC, Valor NUMERIC);
CREATE INDEX ixAlarmesPressao ON AlarmesPressao (SondaID, Data);
CREATE TABLE AlarmesPOrv (
  SondaID TEXT COLLATE NOCASE, Nome TEXT COLLATE NOCASE, Data TEXT, Maximo NUMERIC, Minimo NUMERIC, Valor NUMERIC);
CREATE INDEX ixAlarmesPOrv ON AlarmesPOrv (SondaID, Data);
CREATE TABLE MaskListaAlarmes (
  DataI TEXT, DataF TEXT, VerefData TEXT, VerefPor INTEGER, IP TEXT COLLATE NOCASE, IP_Nome TEXT COLLATE NOCASE,
  Descricao TEXT COLLATE NOCASE);
CREATE INDEX ixMaskListaAlarmes ON MaskListaAlarmes (DataI);
CREATE TABLE MaskUtilizadores (ID INTEGER PRIMARY KEY, Nome TEXT COLLATE NOCASE);

-- Devices -----------------------------------------------------------------------------------------------------
CREATE TABLE Poseidons (
  PoseidonIP TEXT COLLATE NOCASE PRIMARY KEY, Nome TEXT COLLATE NOCASE, FirmwareV INTEGER, Modelo REAL,
  Mac TEXT COLLATE NOCASE, Porta INTEGER, m TEXT COLLATE NOCASE, Timeout INTEGER, Estado INTEGER, VistrelS INTEGER,
  ApagarLog INTEGER, NLeiturasM INTEGER);
CREATE TABLE PoseidonInputs (
  PoseidonIP TEXT COLLATE NOCASE, InputNum INTEGER, InputID INTEGER, codFuncao INTEGER, InputState TEXT,
  OutputState TEXT, Estado TEXT, Descricao TEXT COLLATE NOCASE);
CREATE INDEX ixPoseidonInputs ON PoseidonInputs (PoseidonIP, InputNum);
CREATE TABLE PoseidonInputsSpider (
  PoseidonIP TEXT COLLATE NOCASE, InputID INTEGER, InputNum INTEGER, Seleccionado TEXT COLLATE NOCASE,
  opOutputIP TEXT, opOutputID TEXT, InputState TEXT, OutputState TEXT, Estado TEXT, Descricao TEXT COLLATE NOCASE);
CREATE INDEX ixPoseidonInputsSpider ON PoseidonInputsSpider (PoseidonIP, InputID);
CREATE TABLE PoseidonOutputs (
  PoseidonIP TEXT COLLATE NOCASE, OutputNum INTEGER, OutputID INTEGER, codFuncao INTEGER, DataUltimaMod TEXT,
  Intervalo INTEGER, Estado TEXT, EstadoPoseidon TEXT, Descricao TEXT COLLATE NOCASE);
CREATE INDEX ixPoseidonOutputs ON PoseidonOutputs (PoseidonIP, OutputNum);
CREATE TABLE Damocles (DamoclesIP TEXT COLLATE NOCASE PRIMARY KEY, Nome TEXT COLLATE NOCASE);
CREATE TABLE DamoclesInputs (DamoclesIP TEXT COLLATE NOCASE, InputNum INTEGER, Descricao TEXT COLLATE NOCASE);
CREATE TABLE DamoclesOutputs (DamoclesIP TEXT COLLATE NOCASE, OutputNum INTEGER, Descricao TEXT COLLATE NOCASE);
CREATE TABLE IOcontrollers (ioip TEXT COLLATE NOCASE PRIMARY KEY, Descricao TEXT COLLATE NOCASE);
CREATE TABLE IOcontrollersInputs (ioip TEXT COLLATE NOCASE, InputNum INTEGER, Descricao TEXT COLLATE NOCASE);
CREATE TABLE IOcontrollersOutputs (ioip TEXT COLLATE NOCASE, OutputNum INTEGER, Descricao TEXT COLLATE NOCASE);
CREATE TABLE PortBox (Descricao TEXT COLLATE NOCASE);

-- Rules, owned by the capture service ---------------------------------------------------------------------------
CREATE TABLE REGRAS_CondicoesGruposHead (
  GrupoID TEXT COLLATE NOCASE, Descricao TEXT COLLATE NOCASE, Nome TEXT COLLATE NOCASE);
CREATE TABLE REGRAS_CondicoesInputs (CondicaoID TEXT COLLATE NOCASE, NomeCondicao TEXT COLLATE NOCASE);
CREATE TABLE REGRAS_CondicoesSensores (
  CondicaoID TEXT COLLATE NOCASE, NomeCondicao TEXT COLLATE NOCASE, SensorID TEXT COLLATE NOCASE);
CREATE TABLE REGRAS_Emails (Descricao TEXT COLLATE NOCASE);
CREATE TABLE REGRAS_Outputs (Descricao TEXT COLLATE NOCASE);
CREATE TABLE REGRAS_Sms (Descricao TEXT COLLATE NOCASE);

-- Registers, one row a change or a period -------------------------------------------------------------------------
CREATE TABLE REGISTO_Inputs (
  DispositivoIP TEXT COLLATE NOCASE, InputNum INTEGER, Data TEXT, Estado TEXT COLLATE NOCASE,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixREGISTO_Inputs ON REGISTO_Inputs (DispositivoIP, InputNum, Data, Estado, flag);
CREATE TABLE REGISTO_Outputs (
  DispositivoIP TEXT COLLATE NOCASE, OutputNum INTEGER, Data TEXT, Estado TEXT COLLATE NOCASE,
  flag TEXT COLLATE NOCASE);
CREATE INDEX ixREGISTO_Outputs ON REGISTO_Outputs (DispositivoIP, OutputNum, Data, Estado, flag);
CREATE TABLE REGISTO_C_Inputs (CondicaoID TEXT COLLATE NOCASE, DataON TEXT, DataOFF TEXT, flag TEXT COLLATE NOCASE);
CREATE INDEX ixREGISTO_C_Inputs ON REGISTO_C_Inputs (CondicaoID, DataON);
CREATE TABLE REGISTO_C_Sensores (CondicaoID TEXT COLLATE NOCASE, DataON TEXT, DataOFF TEXT, flag TEXT COLLATE NOCASE);
CREATE INDEX ixREGISTO_C_Sensores ON REGISTO_C_Sensores (CondicaoID, DataON);
CREATE TABLE REGISTO_C_Grupos (GrupoID TEXT COLLATE NOCASE, DataON TEXT, DataOFF TEXT, flag TEXT COLLATE NOCASE);
CREATE INDEX ixREGISTO_C_Grupos ON REGISTO_C_Grupos (GrupoID, DataON);

-- Sens-UI scales ----------------------------------------------------------------------------------------------
CREATE TABLE SensUI_Escalas (
  EscalaID INTEGER PRIMARY KEY, ID TEXT, Ident TEXT, NomeEscala TEXT COLLATE NOCASE, Maximo NUMERIC, Minimo NUMERIC);
CREATE TABLE SensUI_Relacoes (SensorID TEXT COLLATE NOCASE, EscalaID INTEGER);
CREATE INDEX ixSensUI_Relacoes ON SensUI_Relacoes (SensorID);

-- Logger missions ---------------------------------------------------------------------------------------------
CREATE TABLE DS1921head (
  LoggerID TEXT COLLATE NOCASE, Nomelogger TEXT COLLATE NOCASE, DescricaoMissao TEXT COLLATE NOCASE, NMissao TEXT,
  DataProg TEXT, DataFimMissao TEXT, Max NUMERIC, Min NUMERIC, Flag TEXT COLLATE NOCASE, Calibracoes TEXT);
CREATE INDEX ixDS1921head ON DS1921head (LoggerID, Nomelogger, DescricaoMissao, NMissao);
CREATE TABLE DS1921 (
  LoggerID TEXT COLLATE NOCASE, Nomelogger TEXT COLLATE NOCASE, DescricaoMissao TEXT COLLATE NOCASE, NMissao TEXT,
  Data TEXT, Temperatura NUMERIC, Max NUMERIC, Min NUMERIC, Alarm TEXT COLLATE NOCASE, flag TEXT COLLATE NOCASE);
CREATE INDEX ixDS1921 ON DS1921 (LoggerID, Nomelogger, DescricaoMissao, NMissao, Data);

COMMIT;
