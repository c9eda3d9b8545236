-- What changes in the cooperative's books from one year to the next. UTF-8.
-- sqlite3 orchard.db < orchard-migration.sql, after orchard.sql
BEGIN;

ALTER TABLE member ADD COLUMN phone VARCHAR(20);
ALTER TABLE customer RENAME COLUMN vat_no TO vat_number;
ALTER TABLE plot DROP COLUMN remark;

CREATE TABLE invoice (
    invoice_id   INTEGER      NOT NULL PRIMARY KEY,
    delivery_id  INTEGER      NOT NULL,
    issued_on    DATE         NOT NULL DEFAULT CURRENT_DATE,
    amount       DECIMAL(9,2) NOT NULL,
    CONSTRAINT invoice_delivery FOREIGN KEY (delivery_id) REFERENCES delivery (delivery_id)
        ON DELETE RESTRICT ON UPDATE CASCADE
);

DROP INDEX plot_by_sorte;
CREATE INDEX harvest_by_room ON harvest (room, picked_on);

COMMIT;
