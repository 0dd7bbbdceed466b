-- The weakest backhaul of each home and band
--
-- The wireless link with the lowest signal of each night, home and band, the weakest first.
--
-- day         home         band  deviceMAC     fatherMAC     rssi  rxRate
-- 2026-11-20  home0000057     0  020000003906  020000003902    15     103
-- 2026-11-20  home0000094     0  020000005e06  020000005e02    16     103
-- 2026-11-20  home0000014     0  020000000e06  020000000e02    17     138
-- 2026-11-20  home0000111     0  020000006f06  020000006f02    18     138
SELECT day, home, backhaulBand AS band, deviceMAC, fatherMAC, backhaulRssi AS rssi, backhaulRxRate AS rxRate
FROM (
    SELECT *, row_number() OVER (
        PARTITION BY day, home, backhaulBand ORDER BY backhaulRssi, deviceMAC, snapshot) AS place
    FROM tree
    WHERE medium = 'wireless' AND backhaulRssi IS NOT NULL
) AS links
WHERE place = 1
ORDER BY rssi, day, home, band
