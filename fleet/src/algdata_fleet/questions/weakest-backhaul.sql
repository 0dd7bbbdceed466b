-- The weakest backhaul of each home and band
--
-- The wireless link with the lowest signal of each night, home and band, the weakest first.
SELECT day, home, backhaulBand AS band, deviceMAC, fatherMAC, backhaulRssi AS rssi, backhaulRxRate AS rxRate
FROM (
    SELECT *, row_number() OVER (
        PARTITION BY day, home, snapshot, backhaulBand ORDER BY backhaulRssi, deviceMAC) AS place
    FROM tree
    WHERE medium = 'wireless' AND backhaulRssi IS NOT NULL
) AS links
WHERE place = 1
ORDER BY rssi, day, home, band
