refused() { algdata history good "$@"; echo $?; }
refused
refused --field rssi
refused --field bridgin.bridgingRssi
refused --field bridging.bridgingRsi
refused --field bridging.bridgingRssi.9
refused --field bridging.
refused --field alg-output.timeout --kind bridging
refused --field alg-output.timeout --by device
refused --field alg-output.timeout --by srcMAC,srcMAC
refused --field ap-rank.apRank --by deviceMAC,
refused --field score.apRank --by rssi
refused --field ap-rank-index.starttime --by deviceMAC
refused --field ap-rank.apRank --order home
refused --field ap-rank.apRank --path '{home}/{day}/*.txt'
refused --field ap-rank.apRank --path '{home}/{day}/*.txt' --order dya
refused --field ap-rank.apRank --path '{home}/{day}/*.txt' --path '{home}/*' --order day
refused --field ap-rank.apRank --path '{deviceMAC}/{snapshot}'
refused --field ap-rank.apRank --path '{snapshot}/nothing.txt'
refused --field ap-rank.apRank --columns rank
refused --field ap-rank.apRank --sort rank
refused --field ap-rank.apRank --where rssi=3
algdata history good/scanning.txt --field ap-rank.apRank; echo $?
algdata history $scratch --field ap-rank.apRank; echo $?
