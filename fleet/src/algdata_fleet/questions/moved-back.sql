-- Devices that are moved back within three nights
--
-- A night decides to move a device away from its father, and one of the next three nights
-- decides to move it back to that father.
--
-- home         device        moved       fromMAC       toMAC         movedBack
-- home0000005  020000000506  2026-11-20  020000000502  020000000503  2026-11-21
-- home0000013  020000000d06  2026-11-20  020000000d02  020000000d03  2026-11-21
-- home0000021  020000001506  2026-11-20  020000001502  020000001503  2026-11-21
-- home0000029  020000001d06  2026-11-20  020000001d02  020000001d03  2026-11-21
SELECT
    away.home,
    away.srcMAC AS device,
    away.day AS moved,
    here.fatherMAC AS fromMAC,
    away.dstMAC AS toMAC,
    min(back.day) AS movedBack
FROM alg_output AS away
JOIN tree AS here
    ON here.day = away.day AND here.home = away.home AND here.deviceMAC = away.srcMAC
    AND here.snapshot IS NOT DISTINCT FROM away.snapshot
JOIN alg_output AS back
    ON back.home = away.home AND back.srcMAC = away.srcMAC AND back.dstMAC = here.fatherMAC
    AND back.day > away.day AND back.day <= away.day + INTERVAL 3 DAY
WHERE away.dstMAC <> here.fatherMAC
GROUP BY away.home, away.srcMAC, away.day, here.fatherMAC, away.dstMAC
ORDER BY away.home, moved, device
