-- Books of an invented cooperative of fruit growers. UTF-8.
-- sqlite3 orchard.db < orchard.sql
PRAGMA foreign_keys = ON;
BEGIN;

CREATE TABLE member (
    member_id    INTEGER      NOT NULL PRIMARY KEY,
    "Prénom"     VARCHAR(40)  NOT NULL,
    family_name  VARCHAR(60)  NOT NULL COLLATE NOCASE,
    email        VARCHAR(120) UNIQUE,
    joined_on    DATE         NOT NULL DEFAULT CURRENT_DATE,
    mentor_id    INTEGER,
    share        DECIMAL(10,2) NOT NULL DEFAULT 250.00,
    active       BOOLEAN      NOT NULL DEFAULT TRUE,
    CONSTRAINT member_share_not_negative CHECK (share >= 0),
    CONSTRAINT member_no_own_mentor CHECK (mentor_id IS NULL OR mentor_id <> member_id),
    CONSTRAINT member_mentor FOREIGN KEY (mentor_id) REFERENCES member (member_id)
        ON DELETE SET NULL ON UPDATE CASCADE
);

CREATE TABLE orchard (
    orchard_id   INTEGER      NOT NULL PRIMARY KEY,
    member_id    INTEGER      NOT NULL,
    name         VARCHAR(40)  NOT NULL,
    commune      VARCHAR(60)  NOT NULL DEFAULT 'Saint-Rémy',
    altitude_m   SMALLINT     CHECK (altitude_m BETWEEN 0 AND 1500),
    CONSTRAINT orchard_name_per_member UNIQUE (member_id, name),
    CONSTRAINT orchard_member FOREIGN KEY (member_id) REFERENCES member (member_id)
        ON DELETE RESTRICT ON UPDATE CASCADE
);

CREATE TABLE "Obstart" (
    code         CHAR(3)      NOT NULL PRIMARY KEY,
    label        VARCHAR(30)  NOT NULL UNIQUE,
    stone_fruit  BOOLEAN      NOT NULL DEFAULT FALSE,
    CONSTRAINT obstart_code_length CHECK (length(code) = 3)
) WITHOUT ROWID;

CREATE TABLE "Sorte" (
    sorte_id     INTEGER      NOT NULL PRIMARY KEY,
    obstart_code CHAR(3)      NOT NULL DEFAULT 'APF',
    name         VARCHAR(40)  NOT NULL,
    "Größe"      DECIMAL(4,1),             -- usual diameter in millimetres
    ripe_from    SMALLINT     NOT NULL,    -- calendar week
    ripe_to      SMALLINT     NOT NULL,
    price_per_kg DECIMAL(6,3) NOT NULL DEFAULT 0,
    picture      BLOB,
    CONSTRAINT sorte_name_per_obstart UNIQUE (obstart_code, name),
    CONSTRAINT sorte_weeks CHECK (ripe_from BETWEEN 1 AND 53 AND ripe_to BETWEEN ripe_from AND 53),
    CONSTRAINT sorte_obstart FOREIGN KEY (obstart_code) REFERENCES "Obstart" (code)
        ON DELETE SET DEFAULT ON UPDATE CASCADE
);

CREATE TABLE plot (
    orchard_id   INTEGER      NOT NULL,
    plot_no      SMALLINT     NOT NULL,
    sorte_id     INTEGER      NOT NULL,
    area_ha      DECIMAL(7,4) NOT NULL,
    tree_count   INTEGER      NOT NULL DEFAULT 0,
    planted_in   SMALLINT,
    remark       TEXT,
    CONSTRAINT plot_key PRIMARY KEY (orchard_id, plot_no),
    CONSTRAINT plot_area CHECK (area_ha > 0),
    CONSTRAINT plot_trees CHECK (tree_count >= 0),
    CONSTRAINT plot_orchard FOREIGN KEY (orchard_id) REFERENCES orchard (orchard_id)
        ON DELETE CASCADE ON UPDATE CASCADE,
    CONSTRAINT plot_sorte FOREIGN KEY (sorte_id) REFERENCES "Sorte" (sorte_id)
        ON DELETE RESTRICT ON UPDATE NO ACTION
);

CREATE TABLE "Kühlraum" (
    room         VARCHAR(10)  NOT NULL PRIMARY KEY,
    capacity_kg  DECIMAL(9,1) NOT NULL,
    stock_kg     DECIMAL(9,1) NOT NULL DEFAULT 0.0,
    "température" REAL        NOT NULL DEFAULT 1.5,
    CONSTRAINT kuehlraum_stock CHECK (stock_kg BETWEEN 0 AND capacity_kg)
);

CREATE TABLE harvest (
    harvest_id   INTEGER      PRIMARY KEY AUTOINCREMENT,
    orchard_id   INTEGER      NOT NULL,
    plot_no      SMALLINT     NOT NULL,
    room         VARCHAR(10),
    picked_on    DATE         NOT NULL,
    weight_kg    DECIMAL(8,1) NOT NULL,
    grade        CHAR(1)      NOT NULL DEFAULT 'A',
    entered_at   TIMESTAMP    NOT NULL DEFAULT CURRENT_TIMESTAMP,
    CONSTRAINT harvest_weight CHECK (weight_kg > 0),
    CONSTRAINT harvest_grade CHECK (grade IN ('A', 'B', 'C')),
    CONSTRAINT harvest_plot FOREIGN KEY (orchard_id, plot_no) REFERENCES plot (orchard_id, plot_no)
        ON DELETE CASCADE ON UPDATE CASCADE,
    CONSTRAINT harvest_room FOREIGN KEY (room) REFERENCES "Kühlraum" (room)
        ON DELETE SET NULL ON UPDATE CASCADE
);

CREATE TABLE customer (
    customer_id  INTEGER      NOT NULL PRIMARY KEY,
    company      VARCHAR(80)  NOT NULL,
    country      CHAR(2)      NOT NULL DEFAULT 'FR',
    vat_no       VARCHAR(14),
    rebate       DECIMAL(4,2) NOT NULL DEFAULT 0.00,
    label        VARCHAR(90)  GENERATED ALWAYS AS (company || ' (' || country || ')') VIRTUAL,
    CONSTRAINT customer_vat UNIQUE (country, vat_no),
    CONSTRAINT customer_rebate CHECK (rebate >= 0 AND rebate < 50)
);

CREATE TABLE delivery (
    delivery_id  INTEGER      NOT NULL PRIMARY KEY,
    customer_id  INTEGER      NOT NULL,
    ordered_on   DATE         NOT NULL DEFAULT CURRENT_DATE,
    shipped_on   DATE,
    "Straße"     VARCHAR(80)  NOT NULL,
    note         VARCHAR(200) DEFAULT '',
    CONSTRAINT delivery_dates CHECK (shipped_on IS NULL OR shipped_on >= ordered_on),
    CONSTRAINT delivery_customer FOREIGN KEY (customer_id) REFERENCES customer (customer_id)
        ON DELETE RESTRICT ON UPDATE CASCADE DEFERRABLE INITIALLY DEFERRED
);

CREATE TABLE delivery_item (
    delivery_id  INTEGER      NOT NULL,
    item_no      SMALLINT     NOT NULL,
    sorte_id     INTEGER      NOT NULL,
    weight_kg    DECIMAL(8,1) NOT NULL CHECK (weight_kg > 0),
    price_per_kg DECIMAL(6,3) NOT NULL,
    amount       DECIMAL(9,2) GENERATED ALWAYS AS (round(weight_kg * price_per_kg, 2)) STORED,
    CONSTRAINT delivery_item_key PRIMARY KEY (delivery_id, item_no),
    CONSTRAINT delivery_item_once UNIQUE (delivery_id, sorte_id),
    CONSTRAINT delivery_item_delivery FOREIGN KEY (delivery_id) REFERENCES delivery (delivery_id)
        ON DELETE CASCADE ON UPDATE CASCADE,
    CONSTRAINT delivery_item_sorte FOREIGN KEY (sorte_id) REFERENCES "Sorte" (sorte_id)
        ON DELETE RESTRICT ON UPDATE CASCADE
);

CREATE INDEX member_by_name ON member (family_name, "Prénom");
CREATE INDEX plot_by_sorte ON plot (sorte_id);
CREATE INDEX harvest_by_day ON harvest (picked_on DESC, orchard_id, plot_no);
CREATE INDEX delivery_open ON delivery (customer_id) WHERE shipped_on IS NULL;
CREATE INDEX sorte_by_name ON "Sorte" (lower(name), ripe_from DESC);
CREATE UNIQUE INDEX customer_by_company ON customer (country, company COLLATE NOCASE);

CREATE VIEW harvest_by_sorte AS
SELECT s.sorte_id, s.name AS sorte, o.label AS obstart, count(*) AS pickings, sum(h.weight_kg) AS weight_kg
FROM harvest h
JOIN plot p ON p.orchard_id = h.orchard_id AND p.plot_no = h.plot_no
JOIN "Sorte" s ON s.sorte_id = p.sorte_id
JOIN "Obstart" o ON o.code = s.obstart_code
GROUP BY s.sorte_id, s.name, o.label;

CREATE VIEW "Lieferübersicht" (delivery_id, company, "Gewicht", "montant_à_payer") AS
SELECT d.delivery_id, c.company, sum(i.weight_kg),
       round(sum(i.weight_kg * i.price_per_kg) * (100 - c.rebate) / 100, 2)
FROM delivery d
JOIN customer c ON c.customer_id = d.customer_id
JOIN delivery_item i ON i.delivery_id = d.delivery_id
GROUP BY d.delivery_id, c.company, c.rebate;

CREATE VIEW commune_with_old_trees AS
SELECT DISTINCT o.commune
FROM orchard o JOIN plot p ON p.orchard_id = o.orchard_id
WHERE p.planted_in < 2000
ORDER BY o.commune;

-- Deleting a line of the overview deletes the delivery.
CREATE TRIGGER delivery_withdrawn INSTEAD OF DELETE ON "Lieferübersicht"
BEGIN
    DELETE FROM delivery WHERE delivery_id = OLD.delivery_id;
END;

CREATE TRIGGER harvest_weighed_again AFTER UPDATE OF weight_kg ON harvest
FOR EACH ROW WHEN NEW.room IS NOT NULL
BEGIN
    UPDATE "Kühlraum" SET stock_kg = stock_kg - OLD.weight_kg + NEW.weight_kg WHERE room = NEW.room;
END;

-- What is picked into a cold room counts towards its stock.
CREATE TRIGGER harvest_fills_room AFTER INSERT ON harvest
FOR EACH ROW WHEN NEW.room IS NOT NULL
BEGIN
    UPDATE "Kühlraum" SET stock_kg = stock_kg + NEW.weight_kg WHERE room = NEW.room;
END;

INSERT INTO member (member_id, "Prénom", family_name, email, joined_on, mentor_id, share) VALUES
    (1, 'Zoé', 'Lagarde', 'zoe@orchard.example', '2011-03-01', NULL, 1200.00),
    (2, 'Jürgen', 'Obermoser', 'juergen@orchard.example', '2015-10-12', 1, 800.50),
    (3, 'Łucja', 'Sadowska', NULL, '2022-02-20', 2, 250.00);
INSERT INTO orchard (orchard_id, member_id, name, commune, altitude_m) VALUES
    (1, 1, 'Clos du Puits', 'Saint-Rémy', 210),
    (2, 2, 'Südhang', 'Mühlbach', 540),
    (3, 3, 'Les Granges', 'Saint-Rémy', NULL);
INSERT INTO "Obstart" (code, label, stone_fruit) VALUES
    ('APF', 'Apfel', FALSE), ('BIR', 'Birne', FALSE), ('PFL', 'Pflaume', TRUE);
INSERT INTO "Sorte" (sorte_id, obstart_code, name, "Größe", ripe_from, ripe_to, price_per_kg) VALUES
    (1, 'APF', 'Rote Lisbeth', 72.5, 36, 40, 1.850),
    (2, 'APF', 'Grünling', 68.0, 39, 43, 1.420),
    (3, 'BIR', 'Beurré du Puits', 80.0, 35, 38, 2.100),
    (4, 'PFL', 'Späte Blaue', 38.5, 37, 39, 2.755);
INSERT INTO plot (orchard_id, plot_no, sorte_id, area_ha, tree_count, planted_in) VALUES
    (1, 1, 1, 0.7500, 310, 2009), (1, 2, 3, 0.4225, 150, 2012),
    (2, 1, 2, 1.2000, 520, 2016), (3, 1, 4, 0.3100, 95, NULL);
INSERT INTO "Kühlraum" (room, capacity_kg, "température") VALUES ('K1', 20000.0, 1.5), ('K2', 8000.0, 0.5);
INSERT INTO harvest (orchard_id, plot_no, room, picked_on, weight_kg, grade) VALUES
    (1, 1, 'K1', '2023-09-11', 2140.5, 'A'), (1, 1, 'K1', '2023-09-18', 1875.0, 'B'),
    (1, 2, 'K2', '2023-09-04', 960.0, 'A'), (2, 1, 'K1', '2023-10-02', 3320.5, 'A'),
    (3, 1, NULL, '2023-09-20', 412.0, 'C');
INSERT INTO customer (customer_id, company, country, vat_no, rebate) VALUES
    (1, 'Épicerie du Marché', 'FR', 'FR00000000001', 3.00),
    (2, 'Mosterei Hügel', 'DE', NULL, 12.50);
INSERT INTO delivery (delivery_id, customer_id, ordered_on, shipped_on, "Straße") VALUES
    (1, 1, '2023-09-25', '2023-09-27', '4, rue des Écoles'),
    (2, 2, '2023-10-05', NULL, 'Hauptstraße 17');
INSERT INTO delivery_item (delivery_id, item_no, sorte_id, weight_kg, price_per_kg) VALUES
    (1, 1, 1, 300.0, 1.850), (1, 2, 3, 120.0, 2.100), (2, 1, 2, 1500.0, 1.100);

COMMIT;
